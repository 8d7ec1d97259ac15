// One mail of an IMAP folder, with its bytes, and the answer to it.
#pragma once
#include "platform/real/imap/body_ranges.h"
#include "platform/real/imap/move_queue.h"
#include "platform/real/mail/header_block.h"

namespace imap {

class item : public outlook::MailItem {
public:
    item(const listed_mail &mail, QByteArray fetched, std::shared_ptr<move_queue> queue);

    QString To() const override { return to; }
    QString Subject() const override { return subject; }
    QString body() override;
    QString SenderName() const override;
    QDateTime ReceivedTime() const override;
    std::unique_ptr<outlook::ReplyItem> Reply() override;
    void Move(outlook::MailFolder &target) override; // only to a folder of the same client

private:
    quint32 uid;
    qint64 received;
    QByteArray bytes;
    mime::header_block head;
    QString to, subject;
    std::shared_ptr<move_queue> moves;
};

}
