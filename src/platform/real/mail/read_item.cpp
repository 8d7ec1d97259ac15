#include "platform/real/mail/read_item.h"
#include "platform/real/mail/mime_body.h"
#include "platform/real/mail/mime_parse.h"
#include "platform/real/mail/reply_item.h"

namespace mail {

read_item::read_item(QByteArray whole_mail, const QDateTime &moment, std::function<void()> before_an_answer)
    : bytes(std::move(whole_mail)),
      received(moment),
      head(mime::read_header_block(bytes)),
      to(mime::to_line(head)),
      subject(mime::subject_of(head)),
      before_answer(std::move(before_an_answer))
{
}

QString read_item::body()
{
    return mime::body_text(bytes, head);
}

QString read_item::SenderName() const
{
    return mime::answer_address(head);
}

std::unique_ptr<outlook::ReplyItem> read_item::Reply()
{
    return reply_to(head, before_answer);
}

}
