// A look into an IMAP or POP3 mailbox.
#pragma once
#include "platform/real/mail_check/check_run.h"

namespace mail {

// Tells the steps from the server to the folder for fetched mail. Gives whether mail can be fetched.
bool check_imap(check_run &run);
bool check_pop3(check_run &run);

}
