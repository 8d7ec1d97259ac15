#include "screens/frame/beside_dialogs.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>
#include <QWindow>

beside_dialogs::beside_dialogs(QWidget &kept_usable) : QObject(&kept_usable), window(kept_usable)
{
    QApplication::instance()->installEventFilter(this);
}

// A window tells of its showing just before it locks the others, and of its hiding just after it has let them go.
bool beside_dialogs::eventFilter(QObject *watched, QEvent *event)
{
    if ((event->type() != QEvent::Show && event->type() != QEvent::Hide) || !watched->isWidgetType())
        return false;
    const auto *shown = static_cast<const QWidget *>(watched);
    if (event->type() == QEvent::Show && shown == &window)
        belong_to(QApplication::activeModalWidget());
    else if (event->type() == QEvent::Show && shown->isWindow() && shown->isModal())
        belong_to(shown);
    else if (event->type() == QEvent::Hide && shown->isWindow() && shown->isModal())
        belong_to(QApplication::activeModalWidget());
    return false;
}

void beside_dialogs::belong_to(const QWidget *dialog)
{
    if (!dialog && window.parentWidget())
        dialog = window.parentWidget()->window();
    if (QWindow *own = window.windowHandle())
        own->setTransientParent(dialog ? dialog->windowHandle() : nullptr);
}
