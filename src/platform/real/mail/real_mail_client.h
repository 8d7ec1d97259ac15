// The mail client with folders as the settings name it. Lives as long as the process, because what is remembered of
// the mailbox lies here, and the connection to it.
#pragma once
#include "platform/mail_client.h"
#include "platform/mail_settings.h"

namespace maildir {
class client_memory;
}
namespace imap {
class account_memory;
}

class real_mail_client : public outlook::mail_client_service {
public:
    real_mail_client();
    ~real_mail_client() override;

    std::unique_ptr<outlook::Application> GetObject() override;    // none: a folder has no running program
    std::unique_ptr<outlook::Application> CreateObject() override; // nullptr for a kind without folders

private:
    std::unique_ptr<outlook::Application> imap_client();

    std::shared_ptr<maildir::client_memory> memory;
    mail::client_settings connected_by; // the one below
    std::shared_ptr<imap::account_memory> imap_memory;
};
