#include "app/wiring.h"
#include "frame/messages.h"
#include "platform/services.h"

wiring::wiring()
{
    set_message_service(&boxes);
    services.dialogs = &dialogs;
    services.mail_client = &mail;
    services.mail_session = &mail_session;
}

wiring::~wiring()
{
    set_message_service(nullptr);
    services = {};
}
