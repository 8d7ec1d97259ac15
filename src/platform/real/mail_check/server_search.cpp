#include "platform/real/mail_check/server_search.h"
#include "platform/real/mail/access_token.h"
#include <algorithm>
#include <array>
#include <optional>

namespace mail {

namespace {

constexpr int longest_guess_ms = 5000;

struct search_result {
    server place; // that answered, or that the failure is about
    std::optional<run_time_error> failure;
};

int port_of(net::protocol speaks, const server &place)
{
    if (place.port != 0)
        return place.port;
    if (speaks == net::protocol::smtp)
        return usual_smtp_port(place.secured);
    return usual_port(speaks == net::protocol::imap ? client_kind::imap : client_kind::pop3, place.secured);
}

bool is_this_machine(const QString &host)
{
    return host.compare(u"localhost", Qt::CaseInsensitive) == 0 || host.startsWith(u"127.") || host == u"::1";
}

// Failures that say more about the place than others come later; a refused login is the server that was looked for.
int weight_of(const run_time_error &error)
{
    constexpr std::array<net::trouble, 7> by_weight{net::trouble::name_not_found,     net::trouble::not_reached,
                                                    net::trouble::timed_out,          net::trouble::closed,
                                                    net::trouble::not_understood,     net::trouble::no_encryption,
                                                    net::trouble::certificate_refused};
    const auto place =
        std::find_if(by_weight.begin(), by_weight.end(), [&error](net::trouble kind) { return net::is(error, kind); });
    return int(place - by_weight.begin());
}

bool is_about_login(const run_time_error &error)
{
    return net::is(error, net::trouble::login_refused) || net::is(error, net::trouble::nobody_let_in);
}

bool ends_search(const run_time_error &error)
{
    return is_about_login(error) || net::is(error, net::trouble::refused) ||
           net::is(error, net::trouble::not_configured);
}

// Throws only when the user gives up.
std::optional<run_time_error> try_place(check_run &run, const search_task &task, const server &where,
                                        const net::patience &patience, const place_opener &open)
{
    net::place place{task.speaks, where, {}, {}, run.request.settings.authority_file};
    try {
        if (task.logs_in)
            set_login(place, run.request.settings, task.password, patience);
        open(place, patience);
        return std::nullopt;
    } catch (const run_time_error &error) {
        if (net::is(error, net::trouble::cancelled))
            throw;
        if (net::is(error, net::trouble::login_refused))
            access_token_refused(place.token);
        return error;
    }
}

search_result try_guesses(check_run &run, const search_task &task, const place_opener &open)
{
    net::patience short_one = run.patience;
    short_one.connect_ms = std::min(short_one.connect_ms, longest_guess_ms);
    search_result best;
    for (const server_guess &guess : task.guesses) {
        server place = guess.place;
        place.user = !task.logs_in ? QString() : task.wanted.user.isEmpty() ? place.user : task.wanted.user;
        const std::optional<run_time_error> failure = try_place(run, task, place, short_one, open);
        if (!failure || ends_search(*failure))
            return {place, failure};
        if (!best.failure || weight_of(*failure) > weight_of(*best.failure))
            best = {place, failure};
    }
    return best;
}

QString tried_names(const search_task &task)
{
    QStringList names;
    for (const server_guess &guess : task.guesses)
        names.append(guess.place.host);
    names.removeDuplicates();
    return names.join(QStringLiteral(", "));
}

bool is_about_encryption(const run_time_error &error)
{
    return net::is(error, net::trouble::certificate_refused) || net::is(error, net::trouble::no_encryption);
}

step_end reached(const search_task &task, const server &place)
{
    return {check_state::good, QStringLiteral("%1 answers at port %2.")
                                   .arg(place.host.trimmed(), QString::number(port_of(task.speaks, place)))};
}

step_end encryption_of(const server &place, bool logs_in)
{
    if (place.secured != security::none)
        return {check_state::good, QStringLiteral("The connection is encrypted, and the certificate is good.")};
    if (is_this_machine(place.host.trimmed()))
        return {check_state::good, QStringLiteral("Not encrypted; the server is on this machine.")};
    return {check_state::warning,
            QStringLiteral("The connection is not encrypted: %1 readable on its way. Choose STARTTLS or TLS if the "
                           "server offers it.")
                .arg(logs_in ? QStringLiteral("the password and every mail travel")
                             : QStringLiteral("every mail travels"))};
}

void tell_success(check_run &run, const search_task &task, const server &place)
{
    run.end(reached(task, place));
    run.tell(task.names.encryption, encryption_of(place, task.logs_in));
    run.tell(task.names.login, task.logs_in
                                   ? step_end{check_state::good, QStringLiteral("Signed in as %1.").arg(place.user)}
                                   : step_end{check_state::skipped, QStringLiteral("The server is used without.")});
}

void tell_failure(check_run &run, const search_task &task, const search_result &result)
{
    const run_time_error &error = *result.failure;
    const QString words = words_and_advice(error);
    if (is_about_encryption(error)) {
        run.end(reached(task, result.place));
        run.tell(task.names.encryption, {check_state::failed, words});
    } else if (is_about_login(error)) {
        run.end(reached(task, result.place));
        run.tell(task.names.encryption, encryption_of(result.place, task.logs_in));
        const bool note_helps = net::is(error, net::trouble::login_refused) && !task.note.isEmpty();
        run.tell(task.names.login, {check_state::failed, note_helps ? words + u' ' + task.note : words});
    } else if (task.wanted.host.trimmed().isEmpty() && !ends_search(error)) {
        run.end({check_state::failed,
                 QStringLiteral("No server was found for %1; tried were %2. Type the server's name as your provider "
                                "tells it. (%3)")
                     .arg(run.address(), tried_names(task), error.description)});
    } else {
        run.end({check_state::failed, words});
    }
}

}

server search_server(check_run &run, const search_task &task, const place_opener &open)
{
    run.begin(task.names.server);
    const bool is_named = !task.wanted.host.trimmed().isEmpty();
    if (!is_named && task.guesses.empty()) {
        run.end(
            {check_state::failed,
             QStringLiteral("No server is set. Type its name, or your mail address, from which it can be guessed.")});
        return {};
    }
    server wanted = task.wanted;
    if (wanted.user.isEmpty() && task.logs_in)
        wanted.user = run.address();
    if (is_named && task.logs_in && wanted.user.isEmpty()) {
        run.end({check_state::failed, QStringLiteral("No user name is set. Mostly it is your mail address.")});
        return {};
    }
    const search_result result = is_named ? search_result{wanted, try_place(run, task, wanted, run.patience, open)}
                                          : try_guesses(run, task, open);
    if (result.failure) {
        tell_failure(run, task, result);
        return {};
    }
    tell_success(run, task, result.place);
    return result.place;
}

}
