#include "screens/intake/PrintRpt.h"
#include "intake/printed_report.h"
#include "platform/widgets/table_report.h"

PrintRpt::PrintRpt(QWidget *parent)
    : report_screen("PrintRpt", "Print Report",
                    "There is no report to print.\nIn the Mail Auditor's sent mails choose what the report is about, "
                    "and press Generate report.",
                    parent)
{
}

std::shared_ptr<paged_report> PrintRpt::make_report()
{
    const auto report = intake::report_to_print();
    if (!report)
        return nullptr;
    table_report::content page;
    page.title = "Report on Sent Mails";
    for (const auto &line : report->head)
        page.head.push_back({line.caption, line.value});
    page.columns = {{"To", 3}, {"Subject", 4.6}, {"Date", 2.4}};
    page.rows.reserve(report->rows.size());
    for (const auto &row : report->rows)
        page.rows.push_back({row.to, row.subject, row.date});
    page.foot = "Generated on " + report->day;
    return std::make_shared<table_report>(std::move(page));
}
