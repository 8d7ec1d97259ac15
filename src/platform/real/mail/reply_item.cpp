#include "platform/real/mail/reply_item.h"
#include "platform/outbox.h"
#include "platform/outside_effects.h"
#include "platform/real/mail/mime_parse.h"

namespace mail {

namespace {

class reply_item : public outlook::ReplyItem {
public:
    reply_item(const mime::header_block &head, std::function<void()> before) : before_it_goes(std::move(before))
    {
        mail.Kind = outbox::mail_kind::answer;
        mail.SendingAccount = mime::to_addresses(head).value(0);
        mail.To = {mime::answer_address(head)};
        const QString id = mime::message_id_of(head);
        if (!id.isEmpty()) {
            mail.Headers.emplace_back(QStringLiteral("In-Reply-To"), id);
            mail.Headers.emplace_back(QStringLiteral("References"), mime::references_of_answer(head));
        }
        mail.Headers.emplace_back(QStringLiteral("Auto-Submitted"), QStringLiteral("auto-replied"));
    }

    // The reason for the answer must be in the store before the answer can be on its way.
    void send() override
    {
        before_outside_effect();
        before_it_goes();
        mail.Subject = Subject;
        mail.body = body;
        outbox::hand_over(mail);
    }

private:
    outbox::outgoing_mail mail;
    std::function<void()> before_it_goes;
};

}

std::unique_ptr<outlook::ReplyItem> reply_to(const mime::header_block &head, std::function<void()> before_it_goes)
{
    return std::make_unique<reply_item>(head, std::move(before_it_goes));
}

}
