// Server settings guessed from an address: the delivered list of common providers (mail_providers.tsv beside the
// program) knows the domain, or else the usual names below it are tried, encrypted ones only. Guesses come in the order
// to try them; nothing here asks the network.
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

// Nothing is guessed from what is no address. Never above the domain: somebody else's server would get the password.
address_guess guess_from_address(const QString &address);

}
