// State of one fetch, kept from its start to its end.
#pragma once
#include "intake/unsubscribe_intake.h"
#include "platform/mail_client.h"
#include "platform/mail_session.h"
#include <optional>

namespace intake {

struct fetch_state {
    bool use_mapi = false; // the client that reads and leaves is in force
    std::unique_ptr<outlook::Application> outlook_app;
    std::unique_ptr<outlook::MailFolder> inbox_folder;
    std::unique_ptr<outlook::MailFolder> target_folder; // Tessaly_Inbox
    std::unique_ptr<outlook::Items> inbox_items;
    outlook::MailItem *current_item = nullptr;
    std::unique_ptr<mapi::MAPISession> MAPISession1;
    std::unique_ptr<mapi::MAPIMessages> MAPIMessages1;
    unsubscribe_rules rules;           // nothing can change them while a fetch runs
    qint16 mail_count = 0;             // mails stored by this fetch
    qint64 total = 0;                  // mails in the Inbox when the walk began
    bool cancelled = false;            // by the user
    std::optional<run_time_error> cut; // the network's failure that ended the walk before its end
};

extern fetch_state fetching;

}
