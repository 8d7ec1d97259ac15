// Server settings guessed from an address: first the delivered list of common providers (mail/providers.tsv beside the
// program), then the usual names. Guesses come in the order to try them; nothing here asks the network.
#pragma once
#include "platform/mail_settings.h"
#include <vector>

namespace mail {

struct server_guess {
    server place;
    bool is_known = false; // from the list
};

struct address_guess {
    QString provider; // its name where the domain is in the list, else ""
    QString note;     // what its users must know first, such as an application password
    std::vector<server_guess> imap, pop3, smtp;
};

address_guess guess_from_address(const QString &address);

}
