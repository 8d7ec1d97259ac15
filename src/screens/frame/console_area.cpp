#include "screens/frame/console_area.h"
#include "screens/icons.h"

#include <QMdiSubWindow>
#include <QPaintEvent>
#include <QPainter>
#include <algorithm>

namespace {

const char *const first_steps = "Mail > Fetch Mail gathers the form mails of your accounts.\n"
                                "Mail > Mail Auditor shows the mails that are stored.\n"
                                "Help > Show Tips gives a few hints.";

}

console_area::console_area(QWidget *parent) : QMdiArea(parent)
{
    setBackground(palette().brush(QPalette::Window));
    setOption(QMdiArea::DontMaximizeSubWindowOnActivation);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setAccessibleName("Open screens");
    setAccessibleDescription(first_steps);
    connect(this, &QMdiArea::subWindowActivated, this, [this] { viewport()->update(); });
}

bool console_area::is_empty() const
{
    const auto windows = subWindowList();
    return std::all_of(windows.begin(), windows.end(), [](const auto *window) { return window->isHidden(); });
}

void console_area::paintEvent(QPaintEvent *event)
{
    QMdiArea::paintEvent(event);
    if (!is_empty())
        return;
    QPainter painter(viewport());
    const QRect room = viewport()->rect();
    constexpr int picture_size = 72;
    const QRect picture(room.center().x() - picture_size / 2, room.center().y() - 120, picture_size, picture_size);
    painter.drawPixmap(picture, drawn_picture("tessaly", picture_size * 2));

    QFont headline = font();
    headline.setPointSizeF(headline.pointSizeF() * 1.5);
    painter.setFont(headline);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(QRect(room.left(), picture.bottom() + 16, room.width(), 32), Qt::AlignCenter,
                     "Welcome to Tessaly");
    painter.setFont(font());
    QColor quiet = palette().color(QPalette::WindowText);
    quiet.setAlpha(190);
    painter.setPen(quiet);
    QRect line(room.left(), picture.bottom() + 60, room.width(), 22);
    for (const QString &step : QString(first_steps).split(u'\n')) {
        painter.drawText(line, Qt::AlignCenter, step);
        line.translate(0, line.height());
    }
}
