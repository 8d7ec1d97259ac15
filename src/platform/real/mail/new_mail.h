// A new mail of the mail client, whichever client it is: Send hands it to the program's own Outbox.
#pragma once
#include "platform/mail_client.h"

namespace mail {

// type as CreateItem takes it.
std::unique_ptr<outlook::NewMail> new_mail(int type);

}
