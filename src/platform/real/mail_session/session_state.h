// What the sessions of one process share: which mailboxes are open, and what is remembered of each kind.
#pragma once
#include "platform/real/mail_session/mbox_mailbox.h"
#include "platform/real/mail_session/pop3_mailbox.h"
#include <map>

struct mail_session_state {
    long last_id = 0;
    pop3::memory pop3;
    mbox::memory mbox;
    std::map<long, std::shared_ptr<reading::mailbox>> open; // by SessionID; they look into the memories
};

std::shared_ptr<reading::mailbox> open_mailbox(mail_session_state &state); // nullptr for a kind with folders
