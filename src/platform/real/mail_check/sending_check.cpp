#include "platform/real/mail_check/sending_check.h"
#include "platform/mail_providers.h"
#include "platform/real/mail/mail_address.h"
#include "platform/real/mail_check/server_search.h"
#include "platform/real/outbox/sendmail_road.h"
#include "platform/real/smtp/dialogue.h"
#include "platform/real/smtp/wire_form.h"
#include <memory>

namespace mail {

namespace {

const QString sending = QStringLiteral("Sending");

bool check_sendmail(check_run &run)
{
    return run.step(sending, []() -> step_end {
        const QString program = outbox::sendmail_program();
        if (program.isEmpty())
            return {check_state::failed, QStringLiteral("There is no program sendmail on this machine. Install a mail "
                                                        "system, or send through your provider's server (SMTP).")};
        return {check_state::good,
                QStringLiteral("Mail is handed to %1; whether it goes on is up to this machine's mail system.")
                    .arg(program)};
    });
}

bool same_login(const client_settings &settings)
{
    return settings.smtp.user.isEmpty() || settings.smtp.user == settings.incoming.user;
}

std::unique_ptr<smtp::dialogue> open_sending_server(check_run &run)
{
    const client_settings &settings = run.request.settings;
    const address_guess guess = guess_from_address(run.address());
    search_task task;
    task.speaks = net::protocol::smtp;
    task.names = {QStringLiteral("Sending server"), QStringLiteral("Encryption of sending"),
                  QStringLiteral("Signing in to send")};
    task.wanted = settings.smtp;
    task.guesses = guess.smtp;
    task.note = guess.note;
    task.logs_in = settings.smtp_logs_in;
    if (!task.logs_in)
        task.wanted.user.clear();
    else if (settings.smtp.user.isEmpty())
        task.wanted.user = run.outcome.found.incoming.user;
    task.password = run.request.smtp_password;
    if (task.password.isEmpty() && same_login(settings)) // as passwords::read has it
        task.password = run.request.password;
    std::unique_ptr<smtp::dialogue> line;
    const server place = search_server(run, task, [&line](const net::place &where, const net::patience &patience) {
        line = std::make_unique<smtp::dialogue>(where, patience);
    });
    if (!line)
        return nullptr;
    run.outcome.found.smtp = place;
    if (settings.smtp.user.isEmpty() && place.user == run.outcome.found.incoming.user)
        run.outcome.found.smtp.user.clear(); // goes on following the mailbox's
    return line;
}

smtp::answer ask(smtp::dialogue &with, const QByteArray &command)
{
    with.say(command + "\r\n");
    const smtp::answer said = with.hear();
    if (!said.is_yes() && !said.is_no())
        throw with.misfit(said);
    return said;
}

step_end refusal(const QString &address, const smtp::answer &said)
{
    if (!said.is_no_for_good())
        return {check_state::warning,
                QStringLiteral("The server does not want to take mail from %1 at this moment. It said: %2")
                    .arg(address, smtp::words_of(said))};
    return {check_state::failed,
            QStringLiteral("The server refuses to send as this address, %1. Choose an address that belongs to this "
                           "user, or allow it in your account. It said: %2")
                .arg(address, smtp::words_of(said))};
}

// The server is told who would send to whom, and then that there is no mail after all.
step_end look_at_sender(smtp::dialogue &with, const QString &address)
{
    if (const QString reason = why_not_writable(address); !reason.isEmpty())
        return {check_state::failed, QStringLiteral("The sending address cannot be used: %1").arg(reason)};
    const smtp::envelope_address form = smtp::envelope_form(address);
    if (form.needs_utf8 && !with.offered().utf8)
        return {
            check_state::failed,
            QStringLiteral("The server cannot send as %1: it takes no letters like these in an address.").arg(address)};
    const QByteArray path = '<' + form.bytes + '>';
    smtp::answer said = ask(with, "MAIL FROM:" + path + (form.needs_utf8 ? " SMTPUTF8" : ""));
    if (said.is_yes())
        said = ask(with, "RCPT TO:" + path);
    if (said.is_no())
        return refusal(address, said);
    ask(with, "RSET");
    return {check_state::good, QStringLiteral("The server sends as %1. Nothing was sent to find out.").arg(address)};
}

bool check_smtp(check_run &run)
{
    const std::unique_ptr<smtp::dialogue> line = open_sending_server(run);
    if (!line)
        return false;
    const QString step = QStringLiteral("Sending address");
    const QString from = run.request.settings.from.isEmpty() ? run.address() : run.request.settings.from;
    if (from.isEmpty()) {
        run.tell(step, {check_state::warning, QStringLiteral("No sending address is set; each mail goes out as the "
                                                             "address of its account.")});
        return true;
    }
    const bool works = run.step(step, [&line, &from] { return look_at_sender(*line, from); });
    line->quit();
    return works;
}

bool check_road(check_run &run)
{
    switch (run.request.settings.sending) {
    case send_by::smtp:
        return check_smtp(run);
    case send_by::sendmail:
        return check_sendmail(run);
    case send_by::keep:
        break;
    }
    run.tell(sending, {check_state::warning, QStringLiteral("Nothing goes out: what the program sends stays in its "
                                                            "Outbox. Choose a sending server to change that.")});
    return false;
}

}

bool check_sending(check_run &run)
{
    run.ends_as_notes = run.request.sending_is_guessed;
    const bool works = check_road(run);
    if (run.ends_as_notes && run.outcome.receives && !works)
        run.outcome.found.sending = send_by::keep;
    return works;
}

}
