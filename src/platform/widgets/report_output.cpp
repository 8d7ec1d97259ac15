#include "platform/widgets/report_output.h"
#include "platform/outside_effects.h"
#include "platform/run_time_error.h"

#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>
#include <QScopeGuard>

namespace {

constexpr quint32 printer_error = 482;
constexpr quint32 file_error = 75;
constexpr quint32 no_such_page = 9;

QString why_no_page(int page, int pages)
{
    return QStringLiteral("There is no page %1: on this paper the report has %2.")
        .arg(page)
        .arg(pages == 1 ? QStringLiteral("1 page") : QStringLiteral("%1 pages").arg(pages));
}

void paint_pages(const paged_report &report, QPagedPaintDevice &device, int first, int last)
{
    QPainter painter;
    if (!painter.begin(&device))
        throw run_time_error{printer_error, QStringLiteral("Printer error")};
    const double scale = double(device.logicalDpiX()) / units_an_inch;
    for (int page = first; page <= last; ++page) {
        if (page > first && !device.newPage())
            throw run_time_error{printer_error, QStringLiteral("Printer error")};
        painter.save();
        painter.scale(scale, scale);
        report.paint_page(painter, page - 1);
        painter.restore();
    }
    if (!painter.end())
        throw run_time_error{printer_error, QStringLiteral("Printer error")};
}

}

void set_paper(const paged_report &report, QPagedPaintDevice &device)
{
    device.setPageSize(report.page_size());
    device.setPageMargins(QMarginsF(0, 0, 0, 0));
}

void paint_report(paged_report &report, QPagedPaintDevice &device, int first, int last)
{
    report.lay_out(device.pageLayout().fullRect(QPageLayout::Inch).size() * units_an_inch);
    const auto own_paper_again = qScopeGuard([&report] { lay_out_on_own_paper(report); }); // whatever fails
    const int pages = report.page_count();
    if (qMax(1, first) > pages) // pages were chosen on the report's own paper; larger paper has fewer
        throw run_time_error{no_such_page, why_no_page(qMax(1, first), pages)};
    paint_pages(report, device, qMax(1, first), last > 0 ? qMin(last, pages) : pages);
}

void save_as_pdf(paged_report &report, const QString &path)
{
    before_outside_effect();
    QSaveFile file(path);
    const auto failed = [&] {
        return run_time_error{file_error,
                              QStringLiteral("The file %1 cannot be written: %2").arg(path, file.errorString())};
    };
    if (!file.open(QIODevice::WriteOnly))
        throw failed();
    {
        QPdfWriter writer(&file);
        writer.setTitle(report.title());
        writer.setCreator(QStringLiteral("Tessaly"));
        set_paper(report, writer);
        paint_report(report, writer);
    }
    if (!file.commit())
        throw failed();
}
