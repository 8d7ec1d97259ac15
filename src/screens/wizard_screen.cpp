#include "screens/wizard_screen.h"
#include "frame/help.h"
#include "frame/status.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QPushButton>

void wizard_screen::help_b_Click()
{
    if (!show_help(help_topic()))
        status_line("There is no help file beside the program.");
}

quint32 wizard_screen::GetBkColor() const
{
    const QColor colour = palette().color(QPalette::Window);
    return quint32(colour.blue() << 16 | colour.green() << 8 | colour.red());
}

void wizard_screen::closeEvent(QCloseEvent *event)
{
    if (shown())
        cancel_b_Click(); // may ask, and may stay
    event->setAccepted(!shown());
}

void wizard_screen::press_default_button()
{
    auto *focused = qobject_cast<QPushButton *>(focusWidget());
    if (focused)
        return focused->click();
    for (QPushButton *button : findChildren<QPushButton *>()) {
        if (button->isDefault() && button->isVisible())
            return button->click();
    }
}

void wizard_screen::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        cancel_b_Click();
    else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        press_default_button();
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
