// Logging in at the POP3 server that the settings name.
#pragma once
#include "platform/mail_settings.h"
#include "platform/real/mail_session/pop3_dialogue.h"
#include <memory>

namespace pop3 {

// An access token that is refused is fetched anew once: the old one may just have come to its end.
std::unique_ptr<dialogue> log_in(const mail::client_settings &settings, const net::patience &patience);

}
