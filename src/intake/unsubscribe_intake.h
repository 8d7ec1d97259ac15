// Recognising an unsubscribe mail on arrival, and acting on it: the address goes on the block list.
// The answer to it: unsubscribe_reply.h. What goes out with keyword and number belongs to direct mail.
#pragma once
#include <QDateTime>
#include <QString>
#include <optional>

namespace intake {

struct unsubscribe_rules { // unsub_detail and the setting enabledUnsubDate
    bool enabled = false;
    QString keyword;
    QString since; // as it is set; empty: unsubscribing does not apply
};

unsubscribe_rules read_unsubscribe_rules();

// The entry number in the subject, or nothing when the mail is no unsubscribe. A text: "000701" is not "701". Throws
// when the date cannot be read, but only for a mail that it decides about.
std::optional<QString> entry_number_in(const QString &subject, const QDateTime &received,
                                       const unsubscribe_rules &rules);

// The address that the number was issued to, or nothing.
std::optional<QString> address_of_entry(const QString &entry_number);

bool is_blocked(const QString &address);
void block_address(const QString &address);

// Puts the entry's address in the place of the sender's on the block list. A sender who was on the list before keeps
// a place there: nobody leaves the list by somebody else's mail.
void replace_blocked_sender(const QString &entry_address, const QString &sender, bool sender_was_blocked);

}
