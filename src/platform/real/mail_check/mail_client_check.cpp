#include "platform/mail_client_check.h"
#include "platform/real/mail/access_token.h"
#include "platform/real/mail_check/local_check.h"
#include "platform/real/mail_check/mailbox_check.h"
#include "platform/real/mail_check/sending_check.h"

namespace mail {

namespace {

bool needs_server(client_kind kind)
{
    return kind == client_kind::imap || kind == client_kind::pop3;
}

bool check_receiving(check_run &run)
{
    switch (run.request.settings.kind) {
    case client_kind::imap:
        return check_imap(run);
    case client_kind::pop3:
        return check_pop3(run);
    case client_kind::mbox:
        return check_mbox(run);
    case client_kind::maildir:
        break;
    }
    return check_maildir(run);
}

bool signs_in_to_send(const client_settings &settings)
{
    return settings.sending == send_by::smtp && settings.smtp_logs_in;
}

// Fetched once and remembered: the steps that sign in find it.
bool has_token(check_run &run)
{
    const client_settings &settings = run.request.settings;
    const bool is_fetched = settings.use_token && !settings.token_command.trimmed().isEmpty();
    if (!is_fetched || !(needs_server(settings.kind) || signs_in_to_send(settings)))
        return true;
    return run.step(QStringLiteral("Access token"), [&run]() -> step_end {
        net::place place;
        set_login(place, run.request.settings, {}, run.patience);
        return {check_state::good, QStringLiteral("The command gave one.")};
    });
}

void check_all(check_run &run)
{
    const client_settings &settings = run.request.settings;
    const bool may_sign_in = has_token(run);
    const step_end no_token{check_state::skipped, QStringLiteral("There is no access token to sign in with.")};
    if (may_sign_in || !needs_server(settings.kind))
        run.outcome.receives = check_receiving(run);
    else
        run.tell(QStringLiteral("Mail server"), no_token);
    if (may_sign_in || !signs_in_to_send(settings))
        run.outcome.sends = check_sending(run);
    else
        run.tell(QStringLiteral("Sending server"), no_token);
}

}

check_outcome check_mail_client(const check_request &request, const net::patience &patience,
                                const std::function<void(const check_line &)> &tell)
{
    check_run run(request, patience, tell);
    const net::patience_scope in_force(patience);
    try {
        check_all(run);
    } catch (const run_time_error &error) {
        run.outcome.cancelled = net::is(error, net::trouble::cancelled);
        run.end(run.outcome.cancelled ? step_end{check_state::skipped, QStringLiteral("Cancelled.")}
                                      : step_end{check_state::failed, words_and_advice(error)});
    }
    return run.outcome;
}

}
