#include "platform/real/mail/maildir_item.h"
#include "platform/clock.h"
#include "platform/outbox.h"
#include "platform/outside_effects.h"
#include "platform/real/mail/answer.h"
#include "platform/real/mail/maildir_folder.h"
#include "platform/real/mail/mime_body.h"
#include "platform/real/mail/mime_parse.h"

namespace maildir {

namespace {

class reply_item : public outlook::ReplyItem {
public:
    reply_item(const mime::header_block &head, std::shared_ptr<move_queue> queue)
        : mail(mail::answer_to(head)), moves(std::move(queue))
    {
    }

    // The reason for the answer must be in the store before the answer can be on its way.
    void send() override
    {
        before_outside_effect();
        moves->finish();
        mail.Subject = Subject;
        mail.body = body;
        outbox::hand_over(mail);
    }

private:
    outbox::outgoing_mail mail;
    std::shared_ptr<move_queue> moves;
};

}

item::item(const QByteArray &in_folder, const listed_mail &mail, QByteArray file, std::shared_ptr<move_queue> queue)
    : lies_in(in_folder),
      name(mail.name),
      bytes(std::move(file)),
      is_new(mail.is_new),
      delivered(mail.delivered),
      to(QString::fromUtf8(mail.to)),
      subject(QString::fromUtf8(mail.subject)),
      head(mime::read_header_block(bytes)),
      moves(std::move(queue))
{
}

QString item::body()
{
    return mime::body_text(bytes, head);
}

QString item::SenderName() const
{
    return mime::answer_address(head);
}

QDateTime item::ReceivedTime() const
{
    return wall_clock(delivered);
}

std::unique_ptr<outlook::ReplyItem> item::Reply()
{
    return std::make_unique<reply_item>(head, moves);
}

void item::Move(outlook::MailFolder &target)
{
    auto *into = dynamic_cast<maildir::folder *>(&target);
    if (!into)
        throw run_time_error{13, QStringLiteral("Type mismatch")};
    moves->ask(lies_in, name, is_new, into->prepared_path());
}

}
