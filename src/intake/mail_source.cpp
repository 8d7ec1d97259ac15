#include "intake/mail_source.h"
#include "frame/status.h"
#include "frame/text.h"
#include "intake/fetch_session.h"
#include "platform/registry.h"
#include "platform/services.h"

namespace intake {

namespace {

bool client_with_folders_is_set()
{
    const QString key = "mailto\\shell\\open\\command";
    return registry_key_exists(key) && upper_case(registry_value(key)).contains("\\OUTLOOK.EXE");
}

std::unique_ptr<outlook::Application> reach_client()
{
    if (!services.mail_client)
        return nullptr;
    auto running = services.mail_client->GetObject();
    return running ? std::move(running) : services.mail_client->CreateObject();
}

// A folder that another program made in other capitals is used, not doubled.
std::unique_ptr<outlook::MailFolder> target_below(outlook::MailFolder &inbox)
{
    const QString wanted = upper_case(u"Tessaly_inbox");
    for (auto &folder : inbox.Folders()) {
        if (upper_case(folder->Name()) == wanted)
            return std::move(folder);
    }
    return inbox.add("Tessaly_Inbox");
}

void open_inbox()
{
    fetching.inbox_folder = fetching.outlook_app->GetNamespace("MAPI")->GetDefaultFolder();
    fetching.target_folder = target_below(*fetching.inbox_folder);
    fetching.inbox_items = fetching.inbox_folder->items();
}

void sign_on()
{
    fetching.use_mapi = true;
    auto session = services.mail_session->session();
    session->SignOn();
    fetching.MAPISession1 = std::move(session); // from here on there is something to sign off
    fetching.MAPIMessages1 = services.mail_session->messages();
    auto &messages = *fetching.MAPIMessages1;
    messages.SessionID = fetching.MAPISession1->SessionID();
    messages.FetchSorted = true;
    messages.FetchUnreadOnly = false;
    messages.Fetch();
}

}

void choose_mail_source()
{
    close_mail_source();
    report_progress("Connecting to your mailbox", 0, 0);
    if (client_with_folders_is_set())
        fetching.outlook_app = reach_client();
    if (fetching.outlook_app)
        open_inbox();
    else
        sign_on();
}

void close_mail_source()
{
    fetching.current_item = nullptr;
    fetching.inbox_items.reset(); // items before their folders, folders before their application
    fetching.target_folder.reset();
    fetching.inbox_folder.reset();
    fetching.outlook_app.reset();
    fetching.MAPIMessages1.reset();
    const auto session = std::move(fetching.MAPISession1);
    fetching = {};
    if (session) // last: it may fail, and nothing of this fetch may be left for the next one
        session->SignOff();
}

}
