// Stands where no mail client of the kind that reads and leaves is at hand: signing on fails with that client's own
// error.
#pragma once
#include "platform/mail_session.h"

class no_mail_session : public mapi::mail_session_service {
public:
    std::unique_ptr<mapi::MAPISession> session() override;
    std::unique_ptr<mapi::MAPIMessages> messages() override;
};
