// The program's own Outbox, <app>/outbox: one .eml and one state file a mail. What is handed over is durable before
// the call returns; delivering it is the sender's business.
#pragma once
#include "platform/run_time_error.h"
#include <QString>
#include <QStringList>
#include <utility>
#include <vector>

namespace outbox {

enum class mail_kind { single, answer, mailing };

struct outgoing_mail {
    mail_kind Kind = mail_kind::single;
    QString SendingAccount; // the address it goes out as; "" when none is known
    QString To;             // one bare address
    QString Subject;
    QString body;                                     // plain text, any line ends
    std::vector<std::pair<QString, QString>> Headers; // further ones, such as {"In-Reply-To", "<...>"}
};

enum class mail_state { waiting, refused };

struct kept_mail {
    QString id; // the file names' stem
    mail_state state = mail_state::waiting;
    QString reason; // why it was refused
    mail_kind Kind = mail_kind::single;
    QString SendingAccount, To, Subject;
};

// Writes the mail into the Outbox and gives its id. An address that cannot be written to (empty, no "@", with CR, LF
// or blanks) keeps it there as refused. Throws only when the Outbox itself cannot be written.
QString hand_over(const outgoing_mail &mail);

std::vector<kept_mail> contents(); // oldest first; a mail half written by a kill is left out
qint64 waiting_count();

}
