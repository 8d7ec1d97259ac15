// A look at the way out: would mail go, and as this address? Nothing is sent.
#pragma once
#include "platform/real/mail_check/check_run.h"

namespace mail {

bool check_sending(check_run &run); // tells its steps; gives whether mail goes out

}
