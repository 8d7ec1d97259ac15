// What can go wrong with a server, as numbers of a run_time_error, and how long the program waits for one.
// The connection itself: platform/real/net/stream.h.
#pragma once
#include "platform/run_time_error.h"
#include <functional>

namespace net {

// The number of a failure says its kind; the description is a sentence for the user, with the server's own words
// where there are any, and never with a password.
enum class trouble : quint32 {
    name_not_found = 33001,
    not_reached = 33002, // nobody answers at that address and port
    timed_out = 33003,
    closed = 33004,              // by the server, in the middle
    certificate_refused = 33005, // the description says why
    no_encryption = 33006,       // the server does not offer STARTTLS, or the TLS handshake failed
    login_refused = 33007,
    refused = 33008,        // the server said no to a command
    not_understood = 33009, // what came is not the protocol
    cancelled = 33010,      // by the user
    not_configured = 33011, // a setting is missing, or a token command gives none
    nobody_let_in = 33012,  // for now, whatever the password
};

run_time_error failure(trouble kind, const QString &description);
bool is_network_failure(const run_time_error &error);
bool is(const run_time_error &error, trouble kind);

// How long one waits, in milliseconds, and who may end the waiting.
struct patience {
    int connect_ms = 20000;        // from the name to being logged in
    int answer_ms = 30000;         // without a single byte from the server
    bool is_tick = false;          // nobody waits for the outcome: old knowledge will do, and no box may open
    std::function<bool()> give_up; // asked some times a second while waiting; true ends it with cancelled
};

// What the mail client waits by; the defaults above when nothing else was said. Each thread has its own, and a worker
// begins with the defaults: hand it the patience that it shall wait by, and put that in force there.
const patience &present_patience();
class patience_scope {
public:
    explicit patience_scope(patience in_force);
    ~patience_scope();
    patience_scope(const patience_scope &) = delete;
    patience_scope &operator=(const patience_scope &) = delete;

private:
    patience before;
};

}
