#include "screens/intake/choices_area.h"

#include <QResizeEvent>

QSize choices_area::sizeHint() const
{
    const QSize hint = QScrollArea::sizeHint();
    const int high = widget() ? widget()->heightForWidth(qMax(width(), widget()->minimumSizeHint().width())) : -1;
    return high < 0 ? hint : QSize(hint.width(), high + 2 * frameWidth());
}

void choices_area::resizeEvent(QResizeEvent *event)
{
    QScrollArea::resizeEvent(event);
    if (event->oldSize().width() != event->size().width())
        updateGeometry();
}
