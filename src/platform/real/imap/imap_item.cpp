#include "platform/real/imap/imap_item.h"
#include "platform/real/imap/imap_folder.h"
#include "platform/real/mail/mime_body.h"
#include "platform/real/mail/mime_parse.h"
#include "platform/real/mail/reply_item.h"

namespace imap {

// The whole mail is at hand here, so its own header speaks, as in a Maildir: a server may see no field in a line that
// ends in a lone CR.
item::item(const listed_mail &mail, QByteArray fetched, std::shared_ptr<move_queue> queue)
    : uid(mail.uid),
      received(mail.received),
      bytes(std::move(fetched)),
      head(mime::read_header_block(bytes)),
      to(mime::to_line(head)),
      subject(mime::subject_of(head)),
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
    return QDateTime::fromSecsSinceEpoch(received, Qt::UTC);
}

std::unique_ptr<outlook::ReplyItem> item::Reply()
{
    return mail::reply_to(head, [queue = moves] { queue->send(); });
}

void item::Move(outlook::MailFolder &target)
{
    auto *into = dynamic_cast<imap::folder *>(&target);
    if (!into)
        throw run_time_error{13, QStringLiteral("Type mismatch")};
    moves->ask(uid, into->wire_name());
}

}
