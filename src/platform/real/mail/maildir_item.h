// One mail of a Maildir, with its bytes, and how it moves.
#pragma once
#include "platform/real/mail/maildir_listing.h"
#include "platform/real/mail/maildir_moves.h"
#include "platform/real/mail/read_item.h"

namespace maildir {

class item : public mail::read_item {
public:
    item(const QByteArray &in_folder, const listed_mail &mail, QByteArray file,
         const std::shared_ptr<move_queue> &queue);

    void Move(outlook::MailFolder &target) override; // only to a folder of the same client

private:
    QByteArray lies_in, name;
    bool is_new;
    std::shared_ptr<move_queue> moves;
};

}
