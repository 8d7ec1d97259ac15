// The report on sent mails: making it, reading it for its pages, laying it out, and saving it as a PDF file.
//   report_bench [NUMBER]     30000 without one; all sent from one account, with bodies of about 2 KiB
// Runs under QT_QPA_PLATFORM=offscreen.
#include "frame/session.h"
#include "intake/printed_report.h"
#include "intake/sent_report.h"
#include "platform/widgets/report_output.h"
#include "platform/widgets/table_report.h"
#include "support/report_site.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QGuiApplication>
#include <cstdio>

namespace {

void fill(int count)
{
    ado::Recordset rows;
    rows.Open("select * from sentitems_tbl", *session.store_connection, ado::cursor_type::keyset,
              ado::lock_type::optimistic);
    for (int number = 0; number < count; ++number) {
        const QString second = QString::number(number % 60).rightJustified(2, u'0');
        rows.AddNew();
        rows.Fields("tsl_to").set_value(QStringLiteral("visitor%1@mail.example").arg(number));
        rows.Fields("tsl_subject")
            .set_value(QStringLiteral("The spring offer of the nursery for visitor %1").arg(number));
        rows.Fields("tsl_sentdate").set_value(QStringLiteral("11/%1/2026 1:02:%2 PM").arg(1 + number % 30).arg(second));
        rows.Fields("tsl_body")
            .set_value(QStringLiteral("The quick brown fox jumps over the lazy dog\r\n").repeated(45));
        rows.Fields("tsl_sentaccount").set_value(QStringLiteral("orders"));
        rows.Fields("matchid").set_value(0);
        rows.Update();
    }
    rows.Close();
    session.store_connection->barrier();
}

void measured(const char *what, const std::function<void()> &work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    session.store_connection->barrier();
    std::printf("%-44s %9.1f ms\n", what, double(timer.nsecsElapsed()) / 1e6);
}

table_report pages_of(const intake::printed_report &read)
{
    table_report::content what;
    what.title = "Report on Sent Mails";
    what.columns = {{"To", 3}, {"Subject", 4.6}, {"Date", 2.4}};
    for (const auto &row : read.rows)
        what.rows.push_back({row.to, row.subject, row.date});
    return table_report(std::move(what));
}

}

int main(int argc, char **argv)
{
    const QGuiApplication application(argc, argv);
    const int count = argc > 1 ? QByteArray(argv[1]).toInt() : 30000;
    const report_site site;
    fill(count);
    measured("checking, selecting, writing the rows", [count] {
        intake::empty_report();
        const auto lines =
            intake::write_report(november(), intake::report_select(november()).value(), [] { return false; });
        if (!lines || int(lines->size()) != count)
            qFatal("the report does not hold all mails");
    });
    intake::printed_report read;
    measured("reading them for the page", [&read] { read = intake::report_to_print().value(); });
    table_report report = pages_of(read);
    measured("laying out", [&report] { lay_out_on_own_paper(report); });
    std::printf("%d pages\n", report.page_count());
    const QString path = site.folder.filePath("report.pdf");
    measured("saving as PDF", [&report, &path] { save_as_pdf(report, path); });
    std::printf("%lld KiB\n", static_cast<long long>(QFileInfo(path).size() / 1024));
    return 0;
}
