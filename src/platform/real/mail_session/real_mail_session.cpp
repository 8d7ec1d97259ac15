#include "platform/real/mail_session/real_mail_session.h"
#include "platform/mail_settings.h"
#include "platform/real/mail_session/mbox_mailbox.h"
#include "platform/real/mail_session/messages.h"
#include "platform/real/mail_session/pop3_mailbox.h"
#include "platform/real/mail_session/session_state.h"

namespace {

class session : public mapi::MAPISession {
public:
    explicit session(std::shared_ptr<mail_session_state> shared) : state(std::move(shared)) {}
    ~session() override { state->open.erase(id); }
    session(const session &) = delete;
    session &operator=(const session &) = delete;

    void SignOn() override { id = ++state->last_id; }
    void SignOff() override
    {
        const auto found = state->open.find(id);
        if (found == state->open.end())
            return;
        const std::shared_ptr<reading::mailbox> box = found->second;
        state->open.erase(found);
        box->say_goodbye();
    }
    long SessionID() const override { return id; }

private:
    std::shared_ptr<mail_session_state> state;
    long id = 0;
};

}

std::shared_ptr<reading::mailbox> open_mailbox(mail_session_state &state)
{
    switch (mail::configured_kind()) {
    case mail::client_kind::pop3:
        return std::make_shared<pop3::mailbox>(mail::read_client_settings(), net::present_patience(), state.pop3);
    case mail::client_kind::mbox:
        return std::make_shared<mbox::mailbox>(mail::mbox_path(), net::present_patience(), state.mbox);
    case mail::client_kind::maildir:
    case mail::client_kind::imap:
        break;
    }
    return nullptr;
}

real_mail_session::real_mail_session() : state(std::make_shared<mail_session_state>()) {}

real_mail_session::~real_mail_session() = default;

std::unique_ptr<mapi::MAPISession> real_mail_session::session()
{
    return std::make_unique<::session>(state);
}

std::unique_ptr<mapi::MAPIMessages> real_mail_session::messages()
{
    return std::make_unique<messages_of_session>(state);
}

int real_mail_session::mbox_walks() const
{
    return state->mbox.walks;
}
