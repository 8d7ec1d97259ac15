#include "screens/icons.h"
#include "screens/drawings.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <map>

namespace {

using draw_routine = void (*)(QPainter &);

const std::map<QString, draw_routine> &pictures()
{
    static const std::map<QString, draw_routine> all{
        {QStringLiteral("fetchmail"), drawings::fetchmail},
        {QStringLiteral("mauditor_mnu"), drawings::sheet_with_magnifier},
        {QStringLiteral("inbox"), drawings::inbox},
        {QStringLiteral("sent"), drawings::sent},
        {QStringLiteral("reply"), drawings::reply},
        {QStringLiteral("delete"), drawings::deletion},
        {QStringLiteral("sendmail"), drawings::sent},
        {QStringLiteral("help"), drawings::help},
        {QStringLiteral("tips"), drawings::tips},
        {QStringLiteral("tessaly"), drawings::tessaly},
        {QStringLiteral("mail_client"), drawings::mail_client},
        {QStringLiteral("accounts"), drawings::accounts},
        {QStringLiteral("running"), drawings::running},
        {QStringLiteral("good"), drawings::good},
        {QStringLiteral("warning"), drawings::warning},
        {QStringLiteral("failed"), drawings::failed},
        {QStringLiteral("skipped"), drawings::skipped},
        {QStringLiteral("key1"), [](QPainter &painter) { drawings::sort_mark(painter, true, false); }},
        {QStringLiteral("key2"), [](QPainter &painter) { drawings::sort_mark(painter, false, true); }},
        {QStringLiteral("keynone"), [](QPainter &painter) { drawings::sort_mark(painter, false, false); }},
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
