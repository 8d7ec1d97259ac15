#include "platform/real/mail_check/check_run.h"

namespace mail {

namespace {

QString advice_for(const run_time_error &error)
{
    if (net::is(error, net::trouble::not_reached) || net::is(error, net::trouble::timed_out))
        return QStringLiteral("Check the name, the port and the kind of encryption; a firewall may be in the way.");
    if (net::is(error, net::trouble::certificate_refused))
        return QStringLiteral("Check the server's name. If it is a server of your own, name the file with the "
                              "certificate of its authority.");
    if (net::is(error, net::trouble::no_encryption))
        return QStringLiteral("Choose another kind of encryption, or ask your provider which one it offers.");
    if (net::is(error, net::trouble::login_refused))
        return QStringLiteral("Check both. Some servers want the whole address as user name, others only what stands "
                              "before the @; many providers want an application password.");
    if (net::is(error, net::trouble::refused) || net::is(error, net::trouble::nobody_let_in))
        return QStringLiteral("Try again in some minutes; if it stays so, ask your provider.");
    if (net::is(error, net::trouble::not_understood) || net::is(error, net::trouble::closed))
        return QStringLiteral("Check the port and the kind of encryption.");
    return {};
}

}

check_run::check_run(const check_request &wanted, const net::patience &how_long, const teller &listener)
    : request(wanted), patience(how_long), tell_line(listener)
{
    outcome.found = wanted.settings;
}

bool check_run::step(const QString &name, const std::function<step_end()> &body)
{
    begin(name);
    try {
        const step_end how = body();
        end(how);
        return how.state == check_state::good || how.state == check_state::warning;
    } catch (const run_time_error &error) {
        if (net::is(error, net::trouble::cancelled))
            throw;
        end({check_state::failed, words_and_advice(error)});
        return false;
    }
}

void check_run::begin(const QString &name)
{
    running = name;
    tell_line({running, check_state::running, {}});
    if (patience.give_up && patience.give_up())
        throw net::failure(net::trouble::cancelled, QStringLiteral("Cancelled."));
}

void check_run::end(const step_end &how)
{
    if (ends_as_notes && how.state == check_state::failed)
        tell_line({running, check_state::warning, QStringLiteral("Sending is not set up: ") + how.words});
    else
        tell_line({running, how.state, how.words});
}

void check_run::tell(const QString &name, const step_end &how)
{
    begin(name);
    end(how);
}

QString check_run::address() const
{
    for (const QString &one : {request.address, request.settings.from, request.settings.incoming.user})
        if (one.contains(u'@'))
            return one.trimmed();
    return {};
}

QString words_and_advice(const run_time_error &error)
{
    const QString advice = advice_for(error);
    return advice.isEmpty() ? error.description : error.description + u' ' + advice;
}

}
