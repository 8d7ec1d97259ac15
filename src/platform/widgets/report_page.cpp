#include "platform/widgets/report_page.h"
#include "platform/widgets/paged_report.h"

#include <QPainter>

report_page::report_page(QWidget *parent) : QWidget(parent) {}

void report_page::show_page(const paged_report *of, int number, const QSizeF &paper_inches)
{
    report = of;
    shown_page = number;
    paper = paper_inches;
    update();
}

void report_page::paintEvent(QPaintEvent *)
{
    if (!report)
        return;
    QPainter painter(this);
    painter.fillRect(rect(), Qt::white);
    painter.save();
    const double scale = width() / (paper.width() * units_an_inch);
    painter.scale(scale, scale);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    report->paint_page(painter, shown_page);
    painter.restore();
    painter.setPen(QColor(0x9a, 0x9a, 0x9a));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}
