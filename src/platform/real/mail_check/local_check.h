// A look at mail on this machine: a Maildir, or an mbox file.
#pragma once
#include "platform/real/mail_check/check_run.h"

namespace mail {

// Tell their steps. Give whether mail can be fetched.
bool check_maildir(check_run &run);
bool check_mbox(check_run &run);

}
