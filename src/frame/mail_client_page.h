// What the page "Mail Client" knows without a control: its sentences, what it fills in by itself, what must be right
// before it saves, and the saving. The page: screens/preferences/mail_client_frm.h.
#pragma once
#include "platform/mail_providers.h"
#include "platform/mail_settings.h"
#include "platform/passwords.h"
#include <optional>

namespace mail_page {

struct entries { // what stands in the fields
    mail::client_settings settings;
    QString address;
    QString password;                     // of the mailbox; the sending server's too unless it has its own
    std::optional<QString> smtp_password; // its own
    bool operator==(const entries &other) const = default;
};

entries stored_settings();           // without the passwords
void add_passwords(entries &stored); // asks the keyring
QString in_force_text();             // one sentence on what is in force now, whatever stands in the fields

struct fault {
    QString field; // the name of its control
    QString words;
};
std::optional<fault> untestable(const entries &typed); // what a test cannot do without
// The first thing that cannot be saved as it is, from the top of the page down.
std::optional<fault> first_fault(const entries &typed);

// Settings, passwords, and a look at what waits to be sent. Throws what saving throws, with nothing half in force.
// settings_file: a password lies there now.
passwords::place save(const entries &typed);

bool needs_server(mail::client_kind kind); // imap and pop3
QString usual_port_text(int port);         // what a port of 0 shows
// True where mail would go readable over the network: no encryption, and not this machine.
bool is_readable_on_the_way(const mail::server &place);

}
