// What the status bar says of the Outbox. Pure.
#pragma once
#include "platform/outbox.h"

namespace outbox {

struct delivery_facts {
    counts left;
    bool busy = false;
    bool keeps_all = false; // nothing is to go out
    QString failure = {};   // what closed the way
    bool of_disk = false;   // the failure; it is told also when nothing waits
    QString next_try = {};  // "2:05:00 PM"; with a failure
    bool limited = false;   // mailings wait for the hour's limit
};

// "" when there is nothing to say.
QString delivery_line(const delivery_facts &facts);
// For the mails that wait: what closed the way, and when it is tried again. "" while it is open.
QString trouble_words(const delivery_facts &facts);

}
