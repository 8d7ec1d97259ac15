#include "screens/frame/status_text.h"

#include <QAccessible>
#include <QResizeEvent>

status_text::status_text(QWidget *parent) : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Preferred);
    hide();
}

void status_text::set_whole_text(const QString &text)
{
    whole = text;
    whole.replace(u'\n', u' ');
    setToolTip(whole.isEmpty() ? QString() : "<qt>" + whole.toHtmlEscaped() + "</qt>"); // so that it wraps
    setAccessibleName(whole);
    if (!whole.isEmpty()) { // a screen reader speaks it up: nothing else tells that something was saved, or failed
        QAccessibleEvent spoken(this, QAccessible::Alert);
        QAccessible::updateAccessibility(&spoken);
    }
    setVisible(!whole.isEmpty());
    show_what_fits();
    updateGeometry();
}

QSize status_text::sizeHint() const
{
    constexpr int air = 12;
    return {fontMetrics().horizontalAdvance(whole) + air, QLabel::sizeHint().height()};
}

QSize status_text::minimumSizeHint() const
{
    return {0, QLabel::minimumSizeHint().height()};
}

void status_text::resizeEvent(QResizeEvent *event)
{
    QLabel::resizeEvent(event);
    show_what_fits();
}

void status_text::show_what_fits()
{
    setText(fontMetrics().elidedText(whole, Qt::ElideRight, contentsRect().width()));
}
