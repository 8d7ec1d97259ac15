#include "platform/real/smtp/smtp_session.h"
#include "platform/real/smtp/mail_transfer.h"

namespace smtp {

session::session(const net::place &where, const net::patience &patience)
    : self(std::make_unique<dialogue>(where, patience))
{
}

session::~session() = default;

outcome session::send(const QString &from, const QStringList &to, QByteArrayView mail,
                      const std::function<void()> &last_moment)
{
    return mail_transfer(*self, mail, last_moment).carry_out(from, to);
}

void session::quit()
{
    self->quit();
}

}
