#include "platform/real/outbox/smtp_road.h"
#include "platform/real/mail/access_token.h"
#include "platform/real/outbox/sendmail_road.h"
#include <utility>

namespace outbox {

smtp::outcome smtp_road::send(const smtp::parcel &what, const std::function<void()> &last_moment,
                              const smtp::parcel *next)
{
    while (true) {
        try {
            return send_once(what, last_moment, next);
        } catch (const run_time_error &error) { // a refused login is no fate of a mail: it has not gone
            if (!net::is(error, net::trouble::login_refused) || !has_another_token())
                throw;
        }
    }
}

smtp::outcome smtp_road::send_once(const smtp::parcel &what, const std::function<void()> &last_moment,
                                   const smtp::parcel *next)
{
    if (!session)
        connect();
    smtp::outcome outcome;
    try {
        outcome = session->send(what, last_moment, next);
    } catch (const run_time_error &) {
        session.reset(); // in the middle of a mail
        throw;
    }
    if (outcome.line_is_broken)
        session.reset();
    return outcome;
}

// A token may grow old before its time; a command that goes on printing the same one has no other.
bool smtp_road::has_another_token()
{
    const QString refused = token;
    mail::access_token_refused(refused);
    if (refused.isEmpty() || std::exchange(token_was_renewed, true))
        return false;
    return sending_place(orders, patience).token != refused;
}

void smtp_road::close()
{
    if (session)
        session->quit();
    session.reset();
}

void smtp_road::connect()
{
    const net::place where = sending_place(orders, patience);
    token = where.token;
    session = std::make_unique<smtp::session>(where, patience);
}

net::place sending_place(const sending_order &order, const net::patience &patience)
{
    const mail::client_settings &settings = order.settings;
    net::place where;
    where.speaks = net::protocol::smtp;
    where.server = settings.smtp;
    where.authority_file = settings.authority_file;
    if (where.server.user.isEmpty())
        where.server.user = settings.incoming.user;
    if (settings.smtp_logs_in)
        mail::set_login(where, settings, order.password, patience);
    else
        where.server.user.clear();
    return where;
}

bool keeps_all(const mail::client_settings &settings)
{
    return settings.sending == mail::send_by::keep;
}

std::unique_ptr<road> road_of(const sending_order &order, const net::patience &patience)
{
    if (order.settings.sending == mail::send_by::sendmail)
        return std::make_unique<sendmail_road>(sendmail_program(), patience);
    return std::make_unique<smtp_road>(order, patience);
}

}
