#include "screens/directmail/signature_entry.h"
#include "frame/messages.h"

#include <QCloseEvent>
#include <QKeyEvent>

void signature_entry::closeEvent(QCloseEvent *event)
{
    const char *const question = "What was typed here is not saved. Go on without saving?";
    if (!holds_changes() || yes_no_before_loss(question, windowTitle()))
        screen::closeEvent(event);
    else
        event->ignore();
}

void signature_entry::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        close();
    else
        screen::keyPressEvent(event);
}
