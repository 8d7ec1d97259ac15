#include "platform/real/mail/reply_item.h"
#include "platform/outbox.h"
#include "platform/outside_effects.h"
#include "platform/real/mail/answer.h"

namespace mail {

namespace {

class reply_item : public outlook::ReplyItem {
public:
    reply_item(const mime::header_block &head, std::function<void()> before)
        : mail(answer_to(head)), before_it_goes(std::move(before))
    {
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
