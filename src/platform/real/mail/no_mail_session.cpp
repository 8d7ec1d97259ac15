#include "platform/real/mail/no_mail_session.h"

namespace {

constexpr quint32 logon_failure = 32003;

class unavailable_session : public mapi::MAPISession {
public:
    void SignOn() override
    {
        throw run_time_error{logon_failure, "Logon failure: no mail client of the configured kind is at hand"};
    }
    void SignOff() override {}
    long SessionID() const override { return 0; }
};

}

std::unique_ptr<mapi::MAPISession> no_mail_session::session()
{
    return std::make_unique<unavailable_session>();
}

std::unique_ptr<mapi::MAPIMessages> no_mail_session::messages()
{
    return nullptr;
}
