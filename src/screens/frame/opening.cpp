#include "screens/frame/opening.h"
#include "frame/back_up_folder.h"
#include "frame/error_log.h"
#include "frame/messages.h"
#include "frame/restore.h"
#include "frame/session.h"
#include "frame/start_up.h"
#include "platform/app_folder.h"
#include "platform/process.h"
#include "platform/settings.h"
#include "platform/text_file.h"
#include "screens/frame/Stage1.h"
#include "screens/frame/frmSplash.h"
#include "screens/frame/menuFrm.h"
#include "screens/screen.h"

namespace {

// The console has the command for it, and does not open over a store that cannot be read.
void offer_restore()
{
    const bool is_of_the_store = session.err_number >= ado::store_failure;
    if (is_of_the_store && !former_back_up(GetSetting("main", "backup")).isEmpty() &&
        yes_no("There is a back-up. Would you like to restore it?") &&
        !guarded("mail_module.bas", "Main", [] { restore_backup(); }))
        say("The back-up was not restored. " + session.err_description, "Tessaly", message_icon::exclamation);
}

[[noreturn]] void end_with_reason()
{
    const bool logged = FileExists(app_path(u"\\errorlog.txt")); // not where the folder cannot be written
    say("Tessaly cannot start: " + session.err_description +
            (logged ? "\n\nThe file errorlog.txt in its folder keeps this message." : ""),
        "Tessaly", message_icon::critical);
    offer_restore();
    end_process(1);
}

void open_console()
{
    the<menuFrm>().show();
    the<menuFrm>().start_delivery_when_painted();
    the<frmSplash>().show();
}

}

void Main()
{
    start begun = start::console;
    if (!guarded("mail_module.bas", "Main", [&] { begun = start_up(); }))
        end_with_reason();
    switch (begun) {
    case start::another_instance:
        end_process();
    case start::first_run:
        return the<Stage1>().show();
    case start::console:
        return open_console();
    }
}
