#include "platform/real/outbox/smtp_road.h"
#include "platform/real/mail/access_token.h"
#include "platform/real/outbox/sendmail_road.h"

namespace outbox {

smtp::outcome smtp_road::send(const QString &from, const QStringList &to, const QByteArray &eml,
                              const std::function<void()> &last_moment)
{
    if (!session)
        connect();
    smtp::outcome outcome;
    try {
        outcome = session->send(from, to, eml, last_moment);
    } catch (const run_time_error &) {
        session.reset(); // in the middle of a mail
        throw;
    }
    if (outcome.line_is_broken)
        session.reset();
    return outcome;
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
    try {
        session = std::make_unique<smtp::session>(where, patience);
    } catch (const run_time_error &error) {
        if (net::is(error, net::trouble::login_refused))
            mail::access_token_refused(where.token);
        throw;
    }
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
