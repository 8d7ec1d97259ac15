#include "screens/frame/system_information_button.h"
#include "frame/error_log.h"
#include "frame/messages.h"
#include "platform/system_information.h"

void show_system_information(const char *form_in_log)
{
    guarded(form_in_log, "cmdSysInfo", [] {
        if (!start_system_information())
            say("System Information Is Unavailable At This Time", "Tessaly", message_icon::exclamation);
    });
}
