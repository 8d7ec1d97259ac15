#include "screens/wait_pointer.h"

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
