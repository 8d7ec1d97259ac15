// A report as pages, for the preview, a PDF file and the printer alike: whoever has something to print gives its size
// and paints a page. Lists in columns are ready made: table_report.h. What shows it: report_viewer.h; what writes
// it: report_output.h.
#pragma once
#include <QLocale>
#include <QPageSize>
#include <QSizeF>
#include <QString>

class QPainter;

// Pages are painted in these units, from the paper's upper left corner, without any margin. Fonts are set by
// setPixelSize in the same units: 10 of them are one point.
constexpr int units_an_inch = 720;

QPageSize usual_page_size(const QLocale &place = {}); // Letter where people use it, else A4

class paged_report {
public:
    virtual ~paged_report() = default;

    virtual QString title() const = 0; // of the print job and the file
    virtual QPageSize page_size() const { return usual_page_size(); }

    // Called before the two below, and again whenever the paper changes.
    virtual void lay_out(const QSizeF &page) = 0;
    virtual int page_count() const = 0;                             // 0: there is nothing to print
    virtual void paint_page(QPainter &painter, int page) const = 0; // the first is 0; nothing beyond the count
};

// Lays it out for its own paper.
QSizeF lay_out_on_own_paper(paged_report &report);
