#include "screens/desktop_style.h"

#include <QPainter>
#include <QStyleOption>

namespace {

bool is_mark(QStyle::PrimitiveElement element)
{
    return element == QStyle::PE_IndicatorCheckBox || element == QStyle::PE_IndicatorRadioButton;
}

bool is_dark(const QPalette &colours)
{
    return colours.color(QPalette::Window).lightness() < colours.color(QPalette::WindowText).lightness();
}

}

void desktop_style::drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                                  const QWidget *widget) const
{
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    if (!is_mark(element) || !is_dark(option->palette))
        return;
    QColor edge = option->palette.color(QPalette::WindowText);
    edge.setAlpha(150);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(edge);
    painter->setBrush(Qt::NoBrush);
    const QRectF outline = QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5);
    if (element == PE_IndicatorRadioButton)
        painter->drawEllipse(outline);
    else
        painter->drawRoundedRect(outline, 2, 2);
    painter->restore();
}
