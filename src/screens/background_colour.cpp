#include "screens/background_colour.h"

#include <QPalette>
#include <QWidget>

quint32 GetBkColor(const QWidget &window)
{
    const QColor colour = window.palette().color(QPalette::Window);
    return quint32(colour.blue() << 16 | colour.green() << 8 | colour.red());
}
