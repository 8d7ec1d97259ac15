// One mail of a Maildir, with its bytes, and the answer to it.
#pragma once
#include "platform/mail_client.h"
#include "platform/real/mail/header_block.h"
#include "platform/real/mail/maildir_listing.h"
#include "platform/real/mail/maildir_moves.h"

namespace maildir {

class item : public outlook::MailItem {
public:
    item(const QByteArray &in_folder, const listed_mail &mail, QByteArray file, std::shared_ptr<move_queue> queue);

    QString To() const override { return to; }
    QString Subject() const override { return subject; }
    QString body() override;
    QString SenderName() const override;
    QDateTime ReceivedTime() const override;
    std::unique_ptr<outlook::ReplyItem> Reply() override;
    void Move(outlook::MailFolder &target) override; // only to a folder of the same client

private:
    QByteArray lies_in, name, bytes;
    bool is_new;
    qint64 delivered;
    QString to, subject;
    mime::header_block head;
    std::shared_ptr<move_queue> moves;
};

}
