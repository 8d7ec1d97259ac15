#include "screens/frame/opening.h"
#include "frame/error_log.h"
#include "frame/messages.h"
#include "frame/session.h"
#include "frame/start_up.h"
#include "platform/app_folder.h"
#include "platform/process.h"
#include "platform/text_file.h"
#include "screens/frame/frmSplash.h"
#include "screens/frame/menuFrm.h"
#include "screens/screen.h"

namespace {

[[noreturn]] void end_with_reason()
{
    const bool logged = FileExists(app_path(u"\\errorlog.txt")); // not where the folder cannot be written
    say("Tessaly cannot start: " + session.err_description +
            (logged ? "\n\nThe file errorlog.txt in its folder keeps this message." : ""),
        "Tessaly", message_icon::critical);
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
        say("The first-run setup is not there yet, so Tessaly cannot be set up here. The program ends.");
        end_process();
    case start::console:
        return open_console();
    }
}
