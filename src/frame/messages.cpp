#include "frame/messages.h"
#include "platform/outside_effects.h"

namespace {

struct messages_state {
    message_service *service = nullptr;
    int busy_depth = 0;
} messages;

std::optional<QString> show_box(const message_box &box)
{
    before_outside_effect(); // what the user is told about is already safe
    if (!messages.service)
        return std::nullopt;
    const busy_scope while_open;
    return messages.service->show(box);
}

}

void set_message_service(message_service *service)
{
    messages.service = service;
}

void say(const QString &text, const QString &title, message_icon icon)
{
    show_box({message_kind::say, text, title, icon, {}});
}

void say_with(const QString &text, const QString &beside)
{
    show_box({message_kind::say, text, QStringLiteral("Tessaly"), message_icon::information, {}, false, beside});
}

bool yes_no(const QString &text, const QString &title, message_icon icon)
{
    return show_box({message_kind::yes_no, text, title, icon, {}}).has_value();
}

bool yes_no_before_loss(const QString &text, const QString &title)
{
    return show_box({message_kind::yes_no, text, title, message_icon::exclamation, {}, true}).has_value();
}

void ask_in_vain(const QString &text, const QString &title, const QString &why)
{
    show_box({message_kind::yes_no, text, title, message_icon::question, {}, true, why, false});
}

bool ok_cancel(const QString &text, const QString &title, message_icon icon)
{
    return show_box({message_kind::ok_cancel, text, title, icon, {}}).has_value();
}

std::optional<QString> input(const QString &prompt, const QString &title, const QString &proposal)
{
    return show_box({message_kind::input, prompt, title, message_icon::none, proposal});
}

bool busy()
{
    return messages.busy_depth > 0;
}

busy_scope::busy_scope()
{
    ++messages.busy_depth;
}

busy_scope::~busy_scope()
{
    --messages.busy_depth;
}
