// One mail of a client with folders whose bytes are at hand: what its header says, its text, and the answer to it.
// Moving it is the business of its folder.
#pragma once
#include "platform/mail_client.h"
#include "platform/real/mail/header_block.h"

namespace mail {

class read_item : public outlook::MailItem {
public:
    // before_an_answer is called when the store is safe and the answer is not handed over yet.
    read_item(QByteArray whole_mail, const QDateTime &moment, std::function<void()> before_an_answer);

    QString To() const override { return to; }
    QString Subject() const override { return subject; }
    QString body() override;
    QString SenderName() const override;
    QDateTime ReceivedTime() const override { return received; }
    std::unique_ptr<outlook::ReplyItem> Reply() override;

private:
    QByteArray bytes;
    QDateTime received;
    mime::header_block head;
    QString to, subject;
    std::function<void()> before_answer;
};

// The folder that a mail shall move to as the client's own; 13 "Type mismatch" for another client's.
template <typename Folder>
Folder &own_folder(outlook::MailFolder &target)
{
    auto *own = dynamic_cast<Folder *>(&target);
    if (!own)
        throw run_time_error{13, QStringLiteral("Type mismatch")};
    return *own;
}

}
