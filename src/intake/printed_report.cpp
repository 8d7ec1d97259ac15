#include "intake/printed_report.h"
#include "frame/store.h"
#include "frame/text.h"

namespace intake {

namespace {

// The filters stand one behind the other, each with its comma in front.
QString without_leading_comma(const QString &filters)
{
    return filters.startsWith(u',') ? filters.mid(1) : filters;
}

std::vector<printed_report::head_line> head_in(ado::Recordset &row)
{
    const auto text = [&row](const char *column) { return row[QString::fromLatin1(column)].text_or_empty(); };
    return {{QStringLiteral("Emails sent from Account: "), text("sentaccount")},
            {QStringLiteral("Between: "), text("between1")},
            {QStringLiteral("Filters used: "), without_leading_comma(text("filtersused"))},
            {QStringLiteral("Dynamic subject fields: "), text("dynsubjectfield")},
            {QStringLiteral("Subject contains words: "), text("subjectcontains")},
            {QStringLiteral("Mails generated: "), text("mailgen")},
            {QStringLiteral("Matching kinds: "), text("matching")}};
}

std::vector<printed_report::row> rows_in_store()
{
    std::vector<printed_report::row> found;
    ado::Recordset rows;
    rows.Open(QStringLiteral("select * from printreport_tbl order by sentdate desc"), *session.store_connection);
    for (; !rows.EOF_(); rows.MoveNext()) {
        found.push_back(
            {rows["sentto"].text_or_empty(), rows["sentsubject"].text_or_empty(), rows["sentdate"].text_or_empty()});
    }
    rows.Close();
    return found;
}

}

std::optional<printed_report> report_to_print()
{
    ado::Recordset newest;
    newest.Open(QStringLiteral("select * from printreport_tbl where id=(select max(id) from printreport_tbl)"),
                *session.store_connection);
    if (newest.EOF_())
        return std::nullopt;
    printed_report report{head_in(newest), newest["gendate"].text_or_empty(), {}};
    newest.Close();
    report.rows = rows_in_store();
    return report;
}

}
