// Trying out the settings of the mail client before they are saved: the Test button and the driver's job. Blocks; meant
// for a worker thread, so it touches neither store nor settings nor keyring: all it needs is handed in.
#pragma once
#include "platform/mail_settings.h"
#include "platform/network.h"
#include <functional>

namespace mail {

enum class check_state { running, good, warning, failed, skipped };

struct check_line {
    QString step; // in the user's words: "Mail server", "Signing in", "Folder Tessaly_Inbox", "Sending"
    check_state state = check_state::running;
    QString words; // what works, or what does not and what to do about it
};

struct check_request {
    client_settings settings;
    QString password, smtp_password;
    QString address; // whom the guesses are for, when a host is empty
    // Nobody asked for the way out: where it does not work, its steps end as notes, and found keeps mail in the Outbox.
    bool sending_is_guessed = false;
};

struct check_outcome {
    bool receives = false, sends = false, cancelled = false;
    client_settings found; // with the guess that answered filled in
};

// tell is called on this thread: once when a step begins (running) and once with its end.
check_outcome check_mail_client(const check_request &request, const net::patience &patience,
                                const std::function<void(const check_line &)> &tell);

}
