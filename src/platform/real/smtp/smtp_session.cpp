#include "platform/real/smtp/smtp_session.h"
#include "platform/real/smtp/mail_transfer.h"

namespace smtp {

session::session(const net::place &where, const net::patience &patience)
    : self(std::make_unique<dialogue>(where, patience))
{
}

session::~session() = default;

outcome session::send(const parcel &what, const std::function<void()> &last_moment, const parcel *next)
{
    std::unique_ptr<mail_transfer> present = std::move(ahead);
    if (present && !present->is_of(what)) { // the server may wait for a mail that does not come
        self->hang_up();
        present.reset();
    }
    if (!present)
        present = std::make_unique<mail_transfer>(*self, what);
    auto following = next ? std::make_unique<mail_transfer>(*self, *next) : nullptr;
    const outcome result = present->carry_out(last_moment, following.get());
    if (following && following->is_asked_for() && !result.line_is_broken)
        ahead = std::move(following);
    return result;
}

void session::quit()
{
    if (ahead)
        self->hang_up(); // a goodbye could be taken for the mail's first line
    ahead.reset();
    self->quit();
}

}
