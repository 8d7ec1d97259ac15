#include "screens/elided_label.h"

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

elided_label::elided_label(QWidget *parent) : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
}

bool elided_label::is_cut() const
{
    return fontMetrics().horizontalAdvance(text()) > contentsRect().width();
}

QSize elided_label::minimumSizeHint() const
{
    return {fontMetrics().averageCharWidth() * 4, QLabel::minimumSizeHint().height()};
}

bool elided_label::event(QEvent *event)
{
    if (event->type() != QEvent::ToolTip || !is_cut())
        return QLabel::event(event);
    const QString whole = "<qt>" + text().toHtmlEscaped() + "</qt>"; // so that it wraps
    QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(), whole, this);
    return true;
}

void elided_label::paintEvent(QPaintEvent *event)
{
    if (!is_cut())
        return QLabel::paintEvent(event);
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    painter.drawText(contentsRect(), int(alignment()),
                     fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width()));
}
