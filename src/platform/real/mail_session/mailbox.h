// A mailbox that is read and left, behind the verbs of platform/mail_session.h: pop3_mailbox.h, mbox_mailbox.h.
#pragma once
#include "platform/real/mail/header_block.h"
#include <QDateTime>
#include <QString>

namespace reading {

struct mail_facts {
    QString recipients; // joined by "; "
    QString subject, sender;
    QDateTime received;             // wall clock
    QString message_id, references; // for an answer
};

mail_facts facts_in(const mime::header_block &head); // received is left invalid where the header has no date

// Mails by their place in the listing, oldest first. A failure of one mail alone leaves the others readable; behind a
// failure of the whole mailbox, facts() throws it again, so that a walk ends and does not fail once a mail.
class mailbox {
public:
    virtual ~mailbox() = default;
    virtual int count() const = 0;
    virtual mail_facts facts(int index) = 0; // all empty: a mail to pass over
    virtual QString text(int index) = 0;
    virtual void say_goodbye() {}
};

}
