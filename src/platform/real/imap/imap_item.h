// One mail of an IMAP folder, with its bytes, and how it moves.
#pragma once
#include "platform/real/imap/body_ranges.h"
#include "platform/real/imap/move_queue.h"
#include "platform/real/mail/read_item.h"

namespace imap {

// The whole mail is at hand here, so its own header speaks, as in a Maildir: a server may see no field in a line that
// ends in a lone CR.
class item : public mail::read_item {
public:
    item(const listed_mail &mail, QByteArray fetched, const std::shared_ptr<move_queue> &queue);

    void Move(outlook::MailFolder &target) override; // only to a folder of the same client

private:
    quint32 uid;
    std::shared_ptr<move_queue> moves;
};

}
