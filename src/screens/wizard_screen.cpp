#include "screens/wizard_screen.h"

#include <QCloseEvent>
#include <QKeyEvent>

void wizard_screen::closeEvent(QCloseEvent *event)
{
    if (shown())
        cancel_b_Click(); // may ask, and may stay
    event->setAccepted(!shown());
}

void wizard_screen::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        cancel_b_Click();
    else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        press_button_for_enter();
    else
        screen::keyPressEvent(event);
}

wait_pointer::wait_pointer(QWidget &screen) : over(&screen), console(screen.window())
{
    if (QWidget *parent = console->parentWidget()) // a dialog over the console
        console = parent->window();
    over->setCursor(Qt::WaitCursor);
    console->setCursor(Qt::WaitCursor);
}

wait_pointer::~wait_pointer()
{
    if (over)
        over->unsetCursor();
    if (console)
        console->unsetCursor();
}
