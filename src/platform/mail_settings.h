// The settings group "mail_client": which mail client stands behind the program and how mail goes out. Passwords lie
// elsewhere: platform/passwords.h.
#pragma once
#include <QString>

namespace mail {

enum class client_kind { maildir, imap, pop3, mbox };
enum class security { none, starttls, tls };
enum class send_by { smtp, sendmail, keep };

struct server {
    QString host;
    int port = 0; // 0: the usual one of protocol and security
    security secured = security::tls;
    QString user; // "": no login
    bool operator==(const server &other) const = default;
};

struct client_settings {
    bool configured = false; // a kind was set; otherwise a silent local Maildir is in force
    client_kind kind = client_kind::maildir;
    QString maildir, mbox;           // paths as typed; "~/" is the home folder
    server incoming;                 // imap or pop3
    send_by sending = send_by::keep; // also where nothing is set
    server smtp;                     // an empty user logs in as the incoming one does
    bool smtp_logs_in = true;
    QString from;                // the address that mail goes out as when no account is known
    bool use_token = false;      // XOAUTH2 instead of a password, for mailbox and sending
    QString token_command;       // prints the access token; none: the password is the token as typed
    QString authority_file;      // PEM: certificates that it signed are accepted beside those the system knows
    int mailings_per_hour = 450; // 0: no limit
    bool operator==(const client_settings &other) const = default;
};

client_settings read_client_settings();
void write_client_settings(const client_settings &settings); // throws what SaveSetting throws

client_kind configured_kind(); // a Maildir unless something else is set
bool has_folders(client_kind kind);
int usual_port(client_kind kind, security secured); // 993, 143, 995, 110
int usual_smtp_port(security secured);              // 465, 587, 25

struct maildir_place {
    QString path;
    bool made_on_demand = false; // it is the program's own; a missing one that the user named is a failure
};

// The set one, else ~/Maildir where there is one, else <app>/mail, the program's own.
maildir_place maildir_path();
maildir_place maildir_path(const QString &set); // as if this were set
QString mbox_path();                            // "" when none is set
QString mbox_path(const QString &set);

// The address that mail goes out as when no account is known; "" when none is set.
QString from_setting();

}
