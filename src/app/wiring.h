// Which real service stands behind which platform header. Tests wire their stand-ins instead.
#pragma once
#include "platform/real/mail/real_mail_client.h"
#include "platform/real/mail_session/real_mail_session.h"
#include "screens/desktop_dialogs.h"
#include "screens/desktop_printing.h"
#include "screens/message_boxes.h"

// In force as long as it lives: from before start_up() to the end of the process.
class wiring {
public:
    wiring();
    ~wiring();
    wiring(const wiring &) = delete;
    wiring &operator=(const wiring &) = delete;

private:
    message_boxes boxes;
    desktop_dialogs dialogs;
    desktop_printing printing;
    real_mail_client mail;
    real_mail_session mail_session;
};
