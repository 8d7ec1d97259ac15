// The settings group "mail_client": which kind of mail client stands behind the program, and where its mail lies.
#pragma once
#include <QString>

namespace mail {

enum class client_kind { maildir, imap, pop3, mbox };

client_kind configured_kind(); // a Maildir unless something else is set
bool has_folders(client_kind kind);

struct maildir_place {
    QString path;
    bool made_on_demand = false; // it is the program's own; a missing one that the user named is a failure
};

// The set one ("~/" is the home folder), else ~/Maildir where there is one, else <app>/mail, the program's own.
maildir_place maildir_path();

// The address that mail goes out as when no account is known; "" when none is set.
QString from_setting();

}
