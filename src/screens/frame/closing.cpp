#include "screens/frame/closing.h"
#include "frame/error_log.h"
#include "frame/store.h"
#include "platform/mail_delivery.h"
#include "platform/process.h"
#include "screens/frame/outbox_frm.h"
#include "screens/kept_arrangement.h"

namespace {

struct closing_state {
    std::function<void()> end;
} closing;

}

void end_program()
{
    delivery::stop(); // what still waits goes out after the next start
    if (is_loaded<outbox_frm>())
        the<outbox_frm>().finish();
    keep_all_arrangements();
    guarded("menuFrm.frm", "Form_Unload", close_store);
    if (closing.end)
        closing.end();
    else
        end_process();
}

void set_program_end(std::function<void()> end)
{
    closing.end = std::move(end);
}
