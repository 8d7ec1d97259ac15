#include "platform/real/mail/answer.h"
#include "platform/real/mail/mime_parse.h"

namespace mail {

outbox::outgoing_mail answer_to(const answered_mail &mail)
{
    outbox::outgoing_mail answer;
    answer.Kind = outbox::mail_kind::answer;
    answer.SendingAccount = mail.to.value(0);
    answer.To = {mail.sender};
    if (!mail.message_id.isEmpty()) {
        answer.Headers.emplace_back(QStringLiteral("In-Reply-To"), mail.message_id);
        answer.Headers.emplace_back(QStringLiteral("References"), mail.references);
    }
    answer.Headers.emplace_back(QStringLiteral("Auto-Submitted"), QStringLiteral("auto-replied"));
    return answer;
}

outbox::outgoing_mail answer_to(const mime::header_block &head)
{
    return answer_to(answered_mail{mime::to_addresses(head), mime::answer_address(head), mime::message_id_of(head),
                                   mime::references_of_answer(head)});
}

}
