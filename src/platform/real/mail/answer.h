// The answer to a mail, ready but for subject and text: whom it goes to, as whom, and what ties it to the mail. One
// rule for every mail client.
#pragma once
#include "platform/outbox.h"
#include "platform/real/mail/header_block.h"

namespace mail {

// What an answer needs to know of the mail that it answers.
struct answered_mail {
    QStringList to;     // bare addresses; it goes out as the first one
    QString sender;     // mime::answer_address
    QString message_id; // "<...>" or ""
    QString references; // mime::references_of_answer
};

outbox::outgoing_mail answer_to(const answered_mail &mail);
outbox::outgoing_mail answer_to(const mime::header_block &head);

}
