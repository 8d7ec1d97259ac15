// Access tokens (XOAUTH2) for servers that take no password: what the user's command prints, remembered until it is
// refused or old. May be called on any thread. Passwords: platform/passwords.h.
#pragma once
#include "platform/mail_settings.h"
#include "platform/network.h"
#include "platform/real/net/stream.h"

namespace mail {

// The first line that token_command prints; runs it at most connect_ms long. Throws not_configured (with the command's
// status and its first line of complaint, never what it printed), timed_out or cancelled.
QString access_token(const client_settings &settings, const net::patience &patience);

// The server did not take this one: the next access_token runs the command again.
void access_token_refused(const QString &token);

// Password or token of a place, as the settings want it. password is the one that belongs to the place; where no
// command is set it is the token, as typed.
void set_login(net::place &place, const client_settings &settings, const QString &password,
               const net::patience &patience);

}
