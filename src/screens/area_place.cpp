#include "screens/area_place.h"

#include <QEvent>
#include <QMdiArea>
#include <QMdiSubWindow>

area_place::area_place(QMdiSubWindow &placed, QMdiArea &around)
    : QObject(&placed), window(placed), area(around), wanted(placed.sizeHint())
{
    area.viewport()->installEventFilter(this);
    place();
}

bool area_place::is_free() const
{
    return !window.isMinimized() && !window.isMaximized();
}

void area_place::place()
{
    const QRect room = area.viewport()->rect();
    const QSize least = window.minimumSizeHint().expandedTo(window.minimumSize());
    const QSize size = wanted.expandedTo(least).boundedTo(room.size());
    given = QRect(room.center() - QPoint(size.width(), size.height()) / 2, size).intersected(room);
    window.setGeometry(given);
    given = window.geometry(); // a window may refuse to be as small as that
}

void area_place::follow_area()
{
    if (!is_free())
        return;
    if (window.geometry() == given)
        return place();
    const QRect room = area.viewport()->rect();
    QRect kept = window.geometry();
    kept.setSize(kept.size().boundedTo(room.size()).expandedTo(window.minimumSizeHint()));
    kept.moveRight(qMin(kept.right(), room.right()));
    kept.moveBottom(qMin(kept.bottom(), room.bottom()));
    kept.moveTopLeft({qMax(kept.left(), room.left()), qMax(kept.top(), room.top())});
    window.setGeometry(kept);
}

bool area_place::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == area.viewport() && event->type() == QEvent::Resize)
        follow_area();
    return QObject::eventFilter(watched, event);
}
