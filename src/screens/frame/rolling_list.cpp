#include "screens/frame/rolling_list.h"

#include <QAbstractItemView>
#include <QEvent>
#include <QScrollBar>
#include <QStyle>
#include <QTimer>

namespace {

constexpr int roll_step_ms = 60;
constexpr int rest_at_end_steps = 40;

}

rolling_list::rolling_list(QAbstractItemView &list) : QObject(&list), view(list), timer(new QTimer(this))
{
    timer->setInterval(roll_step_ms);
    connect(timer, &QTimer::timeout, this, &rolling_list::roll);
    view.setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    view.installEventFilter(this);
    view.viewport()->installEventFilter(this);
    view.verticalScrollBar()->installEventFilter(this);
}

void rolling_list::begin()
{
    if (view.style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, &view) > 0)
        timer->start();
}

bool rolling_list::rolls() const
{
    return timer->isActive();
}

void rolling_list::roll()
{
    QScrollBar &bar = *view.verticalScrollBar();
    if (bar.value() < bar.maximum())
        return bar.setValue(bar.value() + 1);
    if (++steps_at_end < rest_at_end_steps)
        return;
    steps_at_end = 0;
    bar.setValue(bar.minimum());
}

bool rolling_list::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::Enter:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::FocusIn:
    case QEvent::MouseButtonPress:
        timer->stop();
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}
