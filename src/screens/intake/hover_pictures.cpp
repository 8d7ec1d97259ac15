#include "screens/intake/hover_pictures.h"
#include "screens/icons.h"

#include <QCursor>
#include <QEvent>
#include <QTimer>
#include <QToolButton>
#include <algorithm>

namespace {

constexpr int looks_every_ms = 100;

bool is_under_pointer(const QToolButton &button)
{
    return button.isVisible() && button.isEnabled() && button.rect().contains(button.mapFromGlobal(QCursor::pos()));
}

}

hover_pictures::hover_pictures(const QString &timer_name, QObject *parent) : QObject(parent), timer(new QTimer(this))
{
    timer->setObjectName(timer_name);
    timer->setInterval(looks_every_ms);
    connect(timer, &QTimer::timeout, this, &hover_pictures::MouseOver);
}

void hover_pictures::add(QToolButton &button, const QString &picture)
{
    button.setIcon(drawn_icon(picture));
    button.installEventFilter(this);
    pictures.push_back({&button, picture});
}

void hover_pictures::light(toolbar_picture &picture, bool lit)
{
    if (picture.lit == lit)
        return;
    picture.lit = lit;
    picture.button->setIcon(lit ? lit_icon(picture.name) : drawn_icon(picture.name));
}

void hover_pictures::MouseOver()
{
    for (toolbar_picture &each : pictures)
        light(each, is_under_pointer(*each.button));
    if (std::none_of(pictures.begin(), pictures.end(), [](const toolbar_picture &each) { return each.lit; }))
        timer->stop(); // until the pointer comes again
}

bool hover_pictures::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Enter) {
        for (toolbar_picture &each : pictures)
            light(each, each.button == watched && each.button->isEnabled());
        timer->start();
    }
    return QObject::eventFilter(watched, event);
}
