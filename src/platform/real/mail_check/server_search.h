// Finding the server that answers, encrypted and signed in, and telling how far it went.
#pragma once
#include "platform/mail_providers.h"
#include "platform/real/mail_check/check_run.h"
#include "platform/real/net/stream.h"
#include <vector>

namespace mail {

struct search_names { // of the three steps
    QString server, encryption, login;
};

struct search_task {
    net::protocol speaks = net::protocol::imap;
    search_names names;
    server wanted;                     // an empty host: the guesses are tried
    std::vector<server_guess> guesses; // in their order
    QString note;                      // the provider's, shown where signing in fails
    QString password;
    bool logs_in = true;
};

// Opens, with open, the first place that answers, and tells the three steps. Gives the place; an empty host when there
// is none. open throws what net::stream throws.
using place_opener = std::function<void(const net::place &, const net::patience &)>;
server search_server(check_run &run, const search_task &task, const place_opener &open);

}
