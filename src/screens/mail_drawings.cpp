// The pictures with an envelope in them, and the tray that envelopes lie in.
#include "screens/drawings.h"

#include <QPainter>
#include <cmath>

namespace drawings {

namespace {

void draw_envelope(QPainter &painter, const QRectF &box)
{
    painter.setPen(QPen(envelope_blue, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(paper_white);
    painter.drawRoundedRect(box, 1.5, 1.5);
    painter.setBrush(Qt::NoBrush);
    painter.drawPolyline(QPolygonF{box.topLeft() + QPointF(0.8, 0.8), QPointF(box.center().x(), box.center().y() + 1),
                                   box.topRight() + QPointF(-0.8, 0.8)});
}

void draw_arrow(QPainter &painter, const QPointF &from, const QPointF &to)
{
    painter.setPen(QPen(arrow_green, 2.2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawLine(from, to);
    const QPointF along = (to - from) / std::hypot(to.x() - from.x(), to.y() - from.y()) * 3.6;
    const QPointF across(-along.y(), along.x());
    painter.drawPolyline(QPolygonF{to - along + across, to, to - along - across});
}

}

void fetchmail(QPainter &painter)
{
    draw_envelope(painter, {2.5, 8.5, 19, 12.5});
    draw_arrow(painter, {12, 2}, {12, 10.5});
}

void inbox(QPainter &painter)
{
    painter.setPen(QPen(envelope_blue, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(paper_white);
    painter.drawPolygon(QPolygonF{{3, 14}, {6, 4}, {18, 4}, {21, 14}, {21, 20.5}, {3, 20.5}});
    painter.drawPolyline(QPolygonF{{3, 14}, {8.5, 14}, {9.5, 17}, {14.5, 17}, {15.5, 14}, {21, 14}});
}

void sent(QPainter &painter)
{
    draw_envelope(painter, {2.5, 8.5, 19, 12.5});
    draw_arrow(painter, {8, 6.5}, {20, 2.5});
}

void reply(QPainter &painter)
{
    draw_envelope(painter, {2.5, 8.5, 19, 12.5});
    draw_arrow(painter, {16, 3}, {4, 3});
}

void deletion(QPainter &painter)
{
    draw_envelope(painter, {2.5, 3, 19, 12.5});
    painter.setPen(QPen(alarm_red, 2.4, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(12.5, 12.5), QPointF(20.5, 20.5));
    painter.drawLine(QPointF(20.5, 12.5), QPointF(12.5, 20.5));
}

void sheet_with_magnifier(QPainter &painter)
{
    draw_envelope(painter, {2, 4, 17, 12});
    painter.setPen(QPen(arrow_green, 1.8, Qt::SolidLine, Qt::RoundCap));
    painter.setBrush(QColor(0xff, 0xff, 0xff, 200));
    painter.drawEllipse(QPointF(15.5, 15), 4.6, 4.6);
    painter.setPen(QPen(arrow_green, 2.6, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(19, 18.6), QPointF(22, 21.8));
}

void tessaly(QPainter &painter)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(envelope_blue);
    painter.drawRoundedRect(QRectF(1, 1, 22, 22), 5, 5);
    draw_envelope(painter, {4.5, 5, 15, 9.5});
    painter.setPen(QPen(paper_white, 1.7, Qt::SolidLine, Qt::RoundCap));
    for (const double x : {6.0, 12.0, 18.0})
        painter.drawLine(QPointF(x - 1.2, 18.5), QPointF(x + 1.2, 18.5));
}

void mail_client(QPainter &painter)
{
    draw_envelope(painter, {2.5, 3, 19, 12.5});
    painter.setPen(QPen(arrow_green, 2, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(12, 16), QPointF(12, 21));
    painter.drawLine(QPointF(6, 21), QPointF(18, 21));
}

void accounts(QPainter &painter)
{
    draw_envelope(painter, {2, 3, 15, 10});
    draw_envelope(painter, {7, 10.5, 15, 10});
}

}
