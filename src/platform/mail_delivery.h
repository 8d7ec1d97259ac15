// Sending what waits in the Outbox, in the background: a worker that knows the Outbox, the settings it was given and
// one server, and shares nothing with the store. What waits when the program ends goes on at the next start.
#pragma once
#include "platform/network.h"
#include "platform/outbox.h"
#include <functional>

namespace delivery {

struct report {
    outbox::counts left;
    int sent = 0;         // by this run of the worker
    bool busy = false;    // it is sending at this moment
    QString line = {};    // for the status bar: what waits, and why; "" when nothing does
    QString trouble = {}; // what holds up all that waits, in sentences; "" while the way is open
};

// Called on the thread that called start, whenever something changed.
using listener = std::function<void(const report &)>;

// The user-interface thread's five: the process's one worker begins, looks at once (settings or a password changed; of
// a mail that is handed over it hears by itself), looks at once also at what was to be tried later (the user asks), and
// ends; stop returns when the mail in hand is through, or was given up at a safe point, after some seconds at most.
void start(listener heard);
void wake();
void send_now();
void stop();
report present();

// All that waits, now, on this thread, without a worker (the driver's job). Throws the failure that ended it, if one
// did. Mails that are held, refused or unknown do not count as a failure.
report deliver_all(const net::patience &patience);

}
