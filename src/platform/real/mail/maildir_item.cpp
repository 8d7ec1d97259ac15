#include "platform/real/mail/maildir_item.h"
#include "platform/clock.h"
#include "platform/real/mail/maildir_folder.h"
#include "platform/real/mail/mime_body.h"
#include "platform/real/mail/mime_parse.h"
#include "platform/real/mail/reply_item.h"

namespace maildir {

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
    return mail::reply_to(head, [queue = moves] { queue->finish(); });
}

void item::Move(outlook::MailFolder &target)
{
    auto *into = dynamic_cast<maildir::folder *>(&target);
    if (!into)
        throw run_time_error{13, QStringLiteral("Type mismatch")};
    moves->ask(lies_in, name, is_new, into->prepared_path());
}

}
