// The mail client with folders as the settings name it. Lives as long as the process, because what is remembered of
// the mailbox lies here. Now: a local Maildir.
#pragma once
#include "platform/mail_client.h"

namespace maildir {
class client_memory;
}

class real_mail_client : public outlook::mail_client_service {
public:
    real_mail_client();
    ~real_mail_client() override;

    std::unique_ptr<outlook::Application> GetObject() override;    // none: a folder has no running program
    std::unique_ptr<outlook::Application> CreateObject() override; // nullptr for a kind that is not a Maildir

private:
    std::shared_ptr<maildir::client_memory> memory;
};
