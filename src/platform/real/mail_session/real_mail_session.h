// The mail client that reads and leaves, for real: a POP3 mailbox or an mbox file, as the settings name it. With the
// kinds that have folders it has no messages, but answers and new mails go out by it all the same.
#pragma once
#include "platform/mail_session.h"

struct mail_session_state;

class real_mail_session : public mapi::mail_session_service {
public:
    real_mail_session();
    ~real_mail_session() override;

    std::unique_ptr<mapi::MAPISession> session() override;
    std::unique_ptr<mapi::MAPIMessages> messages() override;

    int mbox_walks() const; // how often an mbox file was walked from end to end; for tests

private:
    std::shared_ptr<mail_session_state> state;
};
