// The program's own Outbox, <app>/outbox: one .eml and one state file a mail. What is handed over is durable before
// the call returns; delivering it is the sender's business: platform/mail_delivery.h.
#pragma once
#include "platform/run_time_error.h"
#include <QDateTime>
#include <QString>
#include <QStringList>
#include <utility>
#include <vector>

namespace outbox {

enum class mail_kind { single, answer, mailing };

struct outgoing_mail {
    mail_kind Kind = mail_kind::single;
    QString SendingAccount; // the address it goes out as; "" when none is known
    QStringList To;         // bare addresses
    QString Subject;
    QString body;     // plain text, any line ends
    QString HTMLBody; // not empty: goes out beside a plain part, which is body or else made from it
    std::vector<std::pair<QString, QString>> Headers; // further ones, such as {"In-Reply-To", "<...>"}
};

enum class mail_state {
    waiting, // goes out when its turn comes
    held,    // would be the 11th answer to one address within an hour; the user decides
    refused, // for good: an address that cannot be written to, or the server's no; reason has its words
    unknown  // the line broke before the server's last word: sent or not, nobody knows; never resent unasked
};

struct kept_mail {
    QString id; // the file names' stem
    mail_state state = mail_state::waiting;
    QString reason; // of held, refused and unknown, and of the last try that failed
    mail_kind Kind = mail_kind::single;
    QString SendingAccount, Subject;
    QStringList To;          // those that it has not reached yet
    QDateTime handed_over;   // wall clock, as the next one
    QDateTime next_try = {}; // of a mail that the server wants to have later
};

// Writes the mail into the Outbox and gives its id. An address that cannot be written to (empty, no "@", with CR, LF
// or blanks) keeps it there as refused. Throws only when the Outbox itself cannot be written.
QString hand_over(const outgoing_mail &mail);

std::vector<kept_mail> contents(); // oldest first; a mail half written by a kill is left out
qint64 waiting_count();

struct counts {
    qint64 waiting = 0, held = 0, refused = 0, unknown = 0;
};
counts count();

// What the user decides. send_again makes any mail wait once more; a refused address is tried again as it is. Both do
// nothing for a mail that is gone or being sent at this moment, and say so by false.
bool send_again(const QString &id);
bool discard(const QString &id);
// The same of many, which wait for the disk together. How many were left alone.
qsizetype send_again(const QStringList &ids);
qsizetype discard(const QStringList &ids);
QByteArray bytes_of(const QString &id); // the mail as it goes out; empty when it is gone

}
