// The marks: how a step went, how a column is sorted, and where help is.
#include "screens/drawings.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>

namespace drawings {

namespace {

void draw_disc(QPainter &painter, const QColor &colour)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    painter.drawEllipse(QPointF(12, 12), 9.5, 9.5);
    painter.setPen(QPen(paper_white, 2.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
}

}

void help(QPainter &painter)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(envelope_blue);
    painter.drawEllipse(QPointF(12, 12), 9.5, 9.5);
    QPainterPath hook;
    hook.moveTo(9, 9.5);
    hook.cubicTo(9, 5, 15.5, 5.2, 15.2, 9.3);
    hook.cubicTo(15, 11.5, 12, 11.6, 12, 14.3);
    painter.setPen(QPen(paper_white, 2, Qt::SolidLine, Qt::RoundCap));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(hook);
    painter.setPen(Qt::NoPen);
    painter.setBrush(paper_white);
    painter.drawEllipse(QPointF(12, 17.6), 1.3, 1.3);
}

void tips(QPainter &painter)
{
    painter.setPen(QPen(lamp_yellow.darker(130), 1.3));
    painter.setBrush(lamp_yellow);
    painter.drawEllipse(QPointF(12, 9.5), 6.5, 6.5);
    painter.setPen(QPen(envelope_blue, 1.8, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(9.5, 18.3), QPointF(14.5, 18.3));
    painter.drawLine(QPointF(10.5, 21.2), QPointF(13.5, 21.2));
}

void running(QPainter &painter)
{
    draw_disc(painter, envelope_blue);
    painter.drawPolyline(QPolygonF{{12, 6.5}, {12, 12}, {16, 14}}); // a clock
}

void good(QPainter &painter)
{
    draw_disc(painter, arrow_green);
    painter.drawPolyline(QPolygonF{{7.5, 12.5}, {10.8, 15.8}, {16.5, 8.8}});
}

void warning(QPainter &painter)
{
    painter.setPen(QPen(lamp_yellow, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(lamp_yellow);
    painter.drawPolygon(QPolygonF{{12, 3.5}, {21.5, 20}, {2.5, 20}});
    painter.setPen(QPen(Qt::black, 2.2, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(12, 9.5), QPointF(12, 14));
    painter.drawPoint(QPointF(12, 17.3));
}

void failed(QPainter &painter)
{
    draw_disc(painter, alarm_red);
    painter.drawLine(QPointF(8.5, 8.5), QPointF(15.5, 15.5));
    painter.drawLine(QPointF(15.5, 8.5), QPointF(8.5, 15.5));
}

void skipped(QPainter &painter)
{
    draw_disc(painter, QColor(0x8a, 0x8f, 0x96));
    painter.drawLine(QPointF(7.5, 12), QPointF(16.5, 12));
}

// The marks on column heads take the text's colour, so that they are seen on a dark desktop too.
void sort_mark(QPainter &painter, bool up, bool down)
{
    const QColor colour = QGuiApplication::palette().color(QPalette::ButtonText);
    QColor faint = colour;
    faint.setAlpha(90);
    const bool unsorted = !up && !down;
    painter.setPen(Qt::NoPen);
    painter.setBrush(unsorted ? faint : colour);
    if (up)
        painter.drawPolygon(QPolygonF{{4, 17}, {12, 7}, {20, 17}});
    if (down)
        painter.drawPolygon(QPolygonF{{4, 7}, {12, 17}, {20, 7}});
    if (unsorted) {
        painter.drawPolygon(QPolygonF{{6, 10}, {12, 3}, {18, 10}});
        painter.drawPolygon(QPolygonF{{6, 14}, {12, 21}, {18, 14}});
    }
}

}
