#include "screens/icons.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QPixmap>
#include <cmath>
#include <map>

// Every picture is drawn on a field of 24 by 24 units.
namespace {

const QColor envelope_blue(0x2f, 0x6f, 0xb5);
const QColor arrow_green(0x2e, 0x9b, 0x5f);
const QColor paper_white(0xfb, 0xfc, 0xfe);
const QColor lamp_yellow(0xf2, 0xb1, 0x34);
const QColor alarm_red(0xc9, 0x3a, 0x3a);

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

void draw_fetchmail(QPainter &painter)
{
    draw_envelope(painter, {2.5, 8.5, 19, 12.5});
    draw_arrow(painter, {12, 2}, {12, 10.5});
}

void draw_inbox(QPainter &painter)
{
    painter.setPen(QPen(envelope_blue, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(paper_white);
    painter.drawPolygon(QPolygonF{{3, 14}, {6, 4}, {18, 4}, {21, 14}, {21, 20.5}, {3, 20.5}});
    painter.drawPolyline(QPolygonF{{3, 14}, {8.5, 14}, {9.5, 17}, {14.5, 17}, {15.5, 14}, {21, 14}});
}

void draw_sent(QPainter &painter)
{
    draw_envelope(painter, {2.5, 8.5, 19, 12.5});
    draw_arrow(painter, {8, 6.5}, {20, 2.5});
}

void draw_reply(QPainter &painter)
{
    draw_envelope(painter, {2.5, 8.5, 19, 12.5});
    draw_arrow(painter, {16, 3}, {4, 3});
}

void draw_delete(QPainter &painter)
{
    draw_envelope(painter, {2.5, 3, 19, 12.5});
    painter.setPen(QPen(alarm_red, 2.4, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(12.5, 12.5), QPointF(20.5, 20.5));
    painter.drawLine(QPointF(20.5, 12.5), QPointF(12.5, 20.5));
}

void draw_sheet_with_magnifier(QPainter &painter)
{
    draw_envelope(painter, {2, 4, 17, 12});
    painter.setPen(QPen(arrow_green, 1.8, Qt::SolidLine, Qt::RoundCap));
    painter.setBrush(QColor(0xff, 0xff, 0xff, 200));
    painter.drawEllipse(QPointF(15.5, 15), 4.6, 4.6);
    painter.setPen(QPen(arrow_green, 2.6, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(19, 18.6), QPointF(22, 21.8));
}

void draw_help(QPainter &painter)
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

void draw_tips(QPainter &painter)
{
    painter.setPen(QPen(lamp_yellow.darker(130), 1.3));
    painter.setBrush(lamp_yellow);
    painter.drawEllipse(QPointF(12, 9.5), 6.5, 6.5);
    painter.setPen(QPen(envelope_blue, 1.8, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(9.5, 18.3), QPointF(14.5, 18.3));
    painter.drawLine(QPointF(10.5, 21.2), QPointF(13.5, 21.2));
}

void draw_tessaly(QPainter &painter)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(envelope_blue);
    painter.drawRoundedRect(QRectF(1, 1, 22, 22), 5, 5);
    draw_envelope(painter, {4.5, 5, 15, 9.5});
    painter.setPen(QPen(paper_white, 1.7, Qt::SolidLine, Qt::RoundCap));
    for (const double x : {6.0, 12.0, 18.0})
        painter.drawLine(QPointF(x - 1.2, 18.5), QPointF(x + 1.2, 18.5));
}

void draw_mail_client(QPainter &painter)
{
    draw_envelope(painter, {2.5, 3, 19, 12.5});
    painter.setPen(QPen(arrow_green, 2, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(12, 16), QPointF(12, 21));
    painter.drawLine(QPointF(6, 21), QPointF(18, 21));
}

void draw_accounts(QPainter &painter)
{
    draw_envelope(painter, {2, 3, 15, 10});
    draw_envelope(painter, {7, 10.5, 15, 10});
}

void draw_disc(QPainter &painter, const QColor &colour)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    painter.drawEllipse(QPointF(12, 12), 9.5, 9.5);
    painter.setPen(QPen(paper_white, 2.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
}

void draw_running(QPainter &painter)
{
    draw_disc(painter, envelope_blue);
    painter.drawPolyline(QPolygonF{{12, 6.5}, {12, 12}, {16, 14}}); // a clock
}

void draw_good(QPainter &painter)
{
    draw_disc(painter, arrow_green);
    painter.drawPolyline(QPolygonF{{7.5, 12.5}, {10.8, 15.8}, {16.5, 8.8}});
}

void draw_warning(QPainter &painter)
{
    painter.setPen(QPen(lamp_yellow, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(lamp_yellow);
    painter.drawPolygon(QPolygonF{{12, 3.5}, {21.5, 20}, {2.5, 20}});
    painter.setPen(QPen(Qt::black, 2.2, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(12, 9.5), QPointF(12, 14));
    painter.drawPoint(QPointF(12, 17.3));
}

void draw_failed(QPainter &painter)
{
    draw_disc(painter, alarm_red);
    painter.drawLine(QPointF(8.5, 8.5), QPointF(15.5, 15.5));
    painter.drawLine(QPointF(15.5, 8.5), QPointF(8.5, 15.5));
}

void draw_skipped(QPainter &painter)
{
    draw_disc(painter, QColor(0x8a, 0x8f, 0x96));
    painter.drawLine(QPointF(7.5, 12), QPointF(16.5, 12));
}

void draw_information(QPainter &painter)
{
    draw_disc(painter, envelope_blue);
    painter.setPen(QPen(Qt::white, 2.4, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(12, 11), QPointF(12, 17));
    painter.drawPoint(QPointF(12, 7));
}

// As the marks on column heads: a cross in a text box is seen on a dark desktop too.
void draw_clear(QPainter &painter)
{
    QColor colour = QGuiApplication::palette().color(QPalette::Text);
    colour.setAlpha(190);
    painter.setPen(QPen(colour, 2.2, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(7, 7), QPointF(17, 17));
    painter.drawLine(QPointF(17, 7), QPointF(7, 17));
}

// The marks on column heads take the text's colour, so that they are seen on a dark desktop too.
void draw_sort_mark(QPainter &painter, bool up, bool down)
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

using draw_routine = void (*)(QPainter &);

const std::map<QString, draw_routine> &pictures()
{
    static const std::map<QString, draw_routine> all{
        {QStringLiteral("fetchmail"), draw_fetchmail},
        {QStringLiteral("mauditor_mnu"), draw_sheet_with_magnifier},
        {QStringLiteral("inbox"), draw_inbox},
        {QStringLiteral("sent"), draw_sent},
        {QStringLiteral("reply"), draw_reply},
        {QStringLiteral("delete"), draw_delete},
        {QStringLiteral("sendmail"), draw_sent},
        {QStringLiteral("help"), draw_help},
        {QStringLiteral("tips"), draw_tips},
        {QStringLiteral("tessaly"), draw_tessaly},
        {QStringLiteral("mail_client"), draw_mail_client},
        {QStringLiteral("accounts"), draw_accounts},
        {QStringLiteral("running"), draw_running},
        {QStringLiteral("good"), draw_good},
        {QStringLiteral("warning"), draw_warning},
        {QStringLiteral("failed"), draw_failed},
        {QStringLiteral("skipped"), draw_skipped},
        {QStringLiteral("information"), draw_information},
        {QStringLiteral("clear"), draw_clear},
        {QStringLiteral("key1"), [](QPainter &painter) { draw_sort_mark(painter, true, false); }},
        {QStringLiteral("key2"), [](QPainter &painter) { draw_sort_mark(painter, false, true); }},
        {QStringLiteral("keynone"), [](QPainter &painter) { draw_sort_mark(painter, false, false); }},
    };
    return all;
}

void draw_lit_ground(QPainter &painter)
{
    QColor light = QGuiApplication::palette().color(QPalette::Highlight);
    light.setAlpha(60);
    painter.setPen(Qt::NoPen);
    painter.setBrush(light);
    painter.drawRoundedRect(QRectF(0, 0, 24, 24), 5, 5);
}

enum class lighting { never, under_the_pointer, always };

// Draws at the size that is asked for, when it is asked for: at the start nearly none is.
class drawn_engine : public QIconEngine {
public:
    drawn_engine(draw_routine routine, lighting when) : draw(routine), lit(when) {}

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State) override
    {
        const int size = qMin(rect.width(), rect.height());
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(rect.x() + (rect.width() - size) / 2.0, rect.y() + (rect.height() - size) / 2.0);
        painter->scale(size / 24.0, size / 24.0);
        if (mode == QIcon::Disabled)
            painter->setOpacity(0.4);
        if (lit == lighting::always || (mode == QIcon::Active && lit == lighting::under_the_pointer))
            draw_lit_ground(*painter);
        draw(*painter);
        painter->restore();
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap made(size);
        made.fill(Qt::transparent);
        QPainter painter(&made);
        paint(&painter, made.rect(), mode, state);
        return made;
    }

    QIconEngine *clone() const override { return new drawn_engine(*this); }

private:
    draw_routine draw;
    lighting lit;
};

}

QIcon drawn_icon(const QString &name)
{
    const auto found = pictures().find(name);
    const lighting when = name.startsWith(u"key") ? lighting::never : lighting::under_the_pointer;
    return found == pictures().end() ? QIcon() : QIcon(new drawn_engine(found->second, when));
}

QIcon lit_icon(const QString &name)
{
    const auto found = pictures().find(name);
    return found == pictures().end() ? QIcon() : QIcon(new drawn_engine(found->second, lighting::always));
}

QPixmap drawn_picture(const QString &name, int size)
{
    const auto found = pictures().find(name);
    return found == pictures().end()
               ? QPixmap()
               : drawn_engine(found->second, lighting::never).pixmap({size, size}, QIcon::Normal, QIcon::Off);
}
