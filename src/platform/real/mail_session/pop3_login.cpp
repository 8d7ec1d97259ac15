#include "platform/real/mail_session/pop3_login.h"
#include "platform/passwords.h"
#include "platform/real/mail/access_token.h"

namespace pop3 {

namespace {

net::place place_of(const mail::client_settings &settings, const net::patience &patience)
{
    net::place where;
    where.speaks = net::protocol::pop3;
    where.server = settings.incoming;
    where.authority_file = settings.authority_file;
    if (where.server.user.isEmpty())
        throw net::failure(net::trouble::not_configured, QStringLiteral("No user name is set for the mailbox."));
    mail::set_login(where, settings, passwords::read(passwords::of::mailbox), patience);
    return where;
}

}

std::unique_ptr<dialogue> log_in(const mail::client_settings &settings, const net::patience &patience)
{
    const net::place where = place_of(settings, patience);
    try {
        return std::make_unique<dialogue>(where, patience);
    } catch (const run_time_error &failure) {
        const bool by_command = !where.token.isEmpty() && !settings.token_command.trimmed().isEmpty();
        if (!by_command || !net::is(failure, net::trouble::login_refused))
            throw;
    }
    mail::access_token_refused(where.token);
    return std::make_unique<dialogue>(place_of(settings, patience), patience);
}

}
