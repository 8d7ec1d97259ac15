// Saving a map over stored mails, beside a pass of the parser over the same mails, and the counting before the save.
//   map_bench [NUMBER]        20000 without one
// Form mails of about 1 KiB, a map of 12 fields, each with its label as supporting text.
#include "frame/store.h"
#include "intake/map_parser.h"
#include "maps/fit_preview.h"
#include "maps/map_writing.h"
#include "support/wizard_site.h"

#include <QElapsedTimer>
#include <cstdio>

namespace {

constexpr int fields = 12;

QString body_of(int number)
{
    QString body;
    for (int field = 0; field < fields; ++field)
        body += QStringLiteral("Label %1: value %1 of customer %2\r\n").arg(field).arg(number);
    return body + QStringLiteral("Remark: the quick brown fox jumps over the lazy dog\r\n").repeated(12);
}

void fill(int count)
{
    ado::Recordset rows;
    rows.Open("select * from orders", *session.store_connection, ado::cursor_type::keyset, ado::lock_type::optimistic);
    for (int number = 0; number < count; ++number) {
        rows.AddNew();
        rows.Fields("tsl_subject").set_value(QStringLiteral("Order"));
        rows.Fields("tsl_recdate").set_value(QDateTime(QDate(2026, 8, 13), QTime(13, 0), Qt::UTC).addSecs(number));
        rows.Fields("tsl_Email").set_value(QStringLiteral("ann@example.net"));
        rows.Fields("tsl_body").set_value(body_of(number));
        rows.Update();
    }
    rows.Close();
    session.store_connection->barrier();
}

void choose_fields(const wizard_site &site)
{
    for (int field = 0; field < fields; ++field) {
        const QString number = QString::number(field);
        site.add_field("field" + number, field + 1, {"Label " + number + ":"});
    }
}

double measured(const char *what, const std::function<void()> &work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    session.store_connection->barrier();
    const double milliseconds = double(timer.nsecsElapsed()) / 1e6;
    std::printf("%-44s %9.1f ms\n", what, milliseconds);
    return milliseconds;
}

void expect_rows(const wizard_site &site, int count)
{
    if (site.column("select count(*) from customers") != QStringList{QString::number(count)})
        qFatal("the map did not take the mails");
}

double parser_pass(int count)
{
    wizard_site site;
    fill(count);
    choose_fields(site);
    maps::write_map("customers");
    const double time = measured("a pass of the parser", [] { intake::parse_unprocessed_mails(); });
    expect_rows(site, count);
    return time;
}

double wizard_save(int count, bool processed)
{
    wizard_site site;
    fill(count);
    if (processed)
        site.run("update orders set tsl_processed=yes");
    choose_fields(site);
    measured("counting before the save", [] { maps::count_fitting_mails(); });
    const double time =
        measured(processed ? "the wizard's save, all taken before" : "the wizard's save, none taken", [] {
            maps::write_map("customers");
            maps::bring_mails_over("customers");
        });
    expect_rows(site, count);
    return time;
}

}

int main(int arguments, char **argument)
{
    const int count = arguments > 1 ? QByteArray(argument[1]).toInt() : 20000;
    const double pass = parser_pass(count);
    const double save = wizard_save(count, false);
    const double again = wizard_save(count, true);
    std::printf("the save takes %.2f and %.2f times the pass over %d mails\n", save / pass, again / pass, count);
    return save <= 2 * pass && again <= 2 * pass ? 0 : 1;
}
