// When what did not work is tried again. Pure: moments in, moments out.
#pragma once
#include "platform/real/outbox/outbox_record.h"

namespace outbox {

// How long to wait for the server after it could not be reached so many times in a row (from 1): 30 seconds and then
// longer, up to half an hour.
int seconds_until_reconnecting(int failures);

// A recipient that the server wants to have later: after 5, 15 and 60 minutes, then every four hours, and after three
// days it is refused with the server's last words. Notes the try that has just failed.
void note_postponed(record &mail, qint64 seconds);

}
