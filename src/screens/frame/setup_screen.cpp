#include "screens/frame/setup_screen.h"
#include "frame/error_log.h"
#include "frame/messages.h"
#include "screens/frame/closing.h"
#include "screens/frame/menuFrm.h"

#include <QCloseEvent>
#include <QKeyEvent>

void setup_screen::leave_setup()
{
    if (busy())
        return;
    if (!may_be_lost())
        return;
    const bool stood_alone = !live_widget(typeid(menuFrm));
    unload_with_later_steps();
    if (stood_alone)
        end_program();
}

// Where the question cannot be asked, what is typed stays.
bool setup_screen::may_be_lost() const
{
    if (!any_unsaved())
        return true;
    bool leaves = false;
    guarded("setup_screen.frm", "leave_setup", [&leaves] {
        leaves = yes_no_before_loss("What is typed here is not kept yet. Leave it?\n\n"
                                    "The setup goes on at the next start of Tessaly.");
    });
    return leaves;
}

void setup_screen::go_back_to(setup_screen &former)
{
    former.later = this;
    former.show();
    hide();
}

bool setup_screen::any_unsaved() const
{
    return holds_unsaved() || (later && later->any_unsaved());
}

void setup_screen::unload_with_later_steps()
{
    if (later)
        later->unload_with_later_steps();
    unload();
}

void setup_screen::closeEvent(QCloseEvent *event)
{
    event->ignore();
    leave_setup();
}

void setup_screen::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        leave_setup();
    else
        screen::keyPressEvent(event);
}
