// How keys and the wheel read on, from page to page.
#include "platform/widgets/report_viewer.h"

#include <QKeyEvent>
#include <QScrollArea>
#include <QScrollBar>
#include <QWheelEvent>

void report_viewer::scroll_or_turn(int direction)
{
    QScrollBar &bar = *area->verticalScrollBar();
    const bool at_end = bar.value() == (direction > 0 ? bar.maximum() : bar.minimum());
    if (!at_end)
        return bar.setValue(bar.value() + direction * bar.pageStep());
    const int former = GetCurrentPageNumber();
    ShowNthPage(former + direction);
    if (direction < 0 && GetCurrentPageNumber() != former)
        bar.setValue(bar.maximum()); // reading on, backwards
}

bool report_viewer::turn_by_key(int key)
{
    switch (key) {
    case Qt::Key_PageDown:
    case Qt::Key_Space:
        scroll_or_turn(1);
        return true;
    case Qt::Key_PageUp:
        scroll_or_turn(-1);
        return true;
    case Qt::Key_Home:
        ShowFirstPage();
        return true;
    case Qt::Key_End:
        ShowLastPage();
        return true;
    default:
        return false;
    }
}

// Past the end of a page lies the next one. A wheel sends whole notches, a touchpad many small parts of one.
bool report_viewer::turn_by_wheel(int delta)
{
    const QScrollBar &bar = *area->verticalScrollBar();
    const bool at_end = delta < 0 ? bar.value() == bar.maximum() : delta > 0 && bar.value() == bar.minimum();
    if (!at_end || (delta < 0) != (wheel_turned < 0))
        wheel_turned = 0;
    if (!at_end)
        return false;
    wheel_turned += delta;
    if (qAbs(wheel_turned) >= QWheelEvent::DefaultDeltasPerStep) {
        wheel_turned %= QWheelEvent::DefaultDeltasPerStep;
        scroll_or_turn(delta < 0 ? 1 : -1);
    }
    return true;
}

bool report_viewer::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == area && event->type() == QEvent::KeyPress)
        return turn_by_key(static_cast<QKeyEvent *>(event)->key());
    if (watched == area->viewport() && event->type() == QEvent::Resize)
        fit_page();
    if (watched == area->viewport() && event->type() == QEvent::Wheel)
        return turn_by_wheel(static_cast<QWheelEvent *>(event)->angleDelta().y());
    return QWidget::eventFilter(watched, event);
}
