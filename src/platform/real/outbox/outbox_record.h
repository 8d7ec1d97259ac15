// What the state file of one mail says. The files: outbox_files.h.
#pragma once
#include "platform/outbox.h"
#include <optional>

namespace outbox {

enum class recipient_state { waiting, refused, unknown };

struct recipient {
    QString address;
    recipient_state state = recipient_state::waiting;
    QString words; // why it is refused or unknown
};

struct record {
    QString id;
    bool held = false;
    QString reason; // of holding it, and of the last try that failed
    mail_kind Kind = mail_kind::single;
    QString SendingAccount, Subject;
    std::vector<recipient> left; // those that it has not reached
    QDateTime handed_over;
    int tries = 0;
    qint64 first_try = 0, next_try = 0; // seconds since 1970; 0: none yet
};

bool has_any(const record &mail, recipient_state state); // recipients left in that state

// Held, else waiting as long as anybody waits, else unknown if anybody is.
mail_state state_of(const record &mail);
kept_mail as_kept(const record &mail);

QByteArray state_bytes(const record &mail);
// Any bytes will do. Nothing when they are no state; what is not understood of one is unknown, which is never sent.
std::optional<record> read_state_bytes(const QString &id, const QByteArray &bytes);
// Of a mail whose state cannot be read: as much as the mail itself tells.
record record_of_damaged(const QString &id, const QByteArray &eml);

// All that wait become unknown, with those words.
void put_in_doubt(record &mail, const QString &words);

}
