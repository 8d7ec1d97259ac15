#include "screens/desktop_printing.h"
#include "frame/messages.h"
#include "platform/outside_effects.h"
#include "platform/widgets/report_output.h"

#include <QApplication>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>

QStringList desktop_printing::availablePrinterNames()
{
    return QPrinterInfo::availablePrinterNames(); // QPrinter::isValid is true without any
}

bool desktop_printing::PrintReport(paged_report &report)
{
    const busy_scope while_open;
    before_outside_effect();
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(report.title());
    printer.setCreator(QStringLiteral("Tessaly"));
    printer.setFullPage(true);
    set_paper(report, printer);
    QPrintDialog dialog(&printer, QApplication::activeWindow());
    dialog.setOption(QAbstractPrintDialog::PrintPageRange);
    dialog.setMinMax(1, report.page_count());
    if (dialog.exec() != QDialog::Accepted)
        return false;
    printer.setFullPage(true);
    printer.setPageMargins(QMarginsF(0, 0, 0, 0));
    paint_report(report, printer, printer.fromPage(), printer.toPage());
    return true;
}
