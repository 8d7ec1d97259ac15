#include "platform/real/mail_check/mailbox_check.h"
#include "platform/mail_providers.h"
#include "platform/real/imap/folder_names.h"
#include "platform/real/mail_check/server_search.h"
#include "platform/real/mail_session/pop3_dialogue.h"
#include <algorithm>
#include <memory>
#include <optional>

namespace mail {

namespace {

const QByteArray folder_name = "Tessaly_Inbox";

QString mailbox_contents(qlonglong count)
{
    if (count == 0)
        return QStringLiteral("It is empty.");
    return count == 1 ? QStringLiteral("It holds one mail.") : QStringLiteral("It holds %1 mails.").arg(count);
}

step_end refusal(const QString &sentence, const QString &words)
{
    return {check_state::failed, words.isEmpty() ? sentence : sentence + QStringLiteral(" It said: ") + words};
}

// Gives whether open has left a connection that is signed in. The settings found get its place.
bool open_mailbox(check_run &run, net::protocol speaks, const place_opener &open)
{
    const address_guess guess = guess_from_address(run.address());
    search_task task;
    task.speaks = speaks;
    task.names = {QStringLiteral("Mail server"), QStringLiteral("Encryption"), QStringLiteral("Signing in")};
    task.wanted = run.request.settings.incoming;
    task.guesses = speaks == net::protocol::imap ? guess.imap : guess.pop3;
    task.note = guess.note;
    task.password = run.request.password;
    const server place = search_server(run, task, open);
    if (place.host.isEmpty())
        return false;
    run.outcome.found.incoming = place;
    return true;
}

std::unique_ptr<imap::connection> open_imap(check_run &run)
{
    std::unique_ptr<imap::connection> line;
    open_mailbox(run, net::protocol::imap, [&line](const net::place &where, const net::patience &patience) {
        const net::patience_scope in_force(patience);
        line = std::make_unique<imap::connection>(where, [](const auto &, const auto &) { return false; });
    });
    return line;
}

std::unique_ptr<pop3::dialogue> open_pop3(check_run &run)
{
    std::unique_ptr<pop3::dialogue> line;
    open_mailbox(run, net::protocol::pop3, [&line](const net::place &where, const net::patience &patience) {
        line = std::make_unique<pop3::dialogue>(where, patience);
    });
    return line;
}

// Only looked at, so that nothing there counts as seen from now on.
step_end look_at_inbox(imap::connection &with)
{
    qulonglong count = 0;
    std::optional<QString> refused;
    const auto take_count = [&count](const imap::response &, const imap::answer &said) {
        const bool is_count = said.kind == imap::answer_kind::numbered && imap::is(said.name, "EXISTS");
        if (is_count)
            count = said.number;
        return is_count;
    };
    with.ask("EXAMINE INBOX", take_count, [&refused](const imap::answer &said) {
        if (said.said != imap::status::ok)
            refused = imap::plain_words(said.human);
    });
    with.finish();
    if (refused)
        return refusal(QStringLiteral("The server does not open the Inbox."), *refused);
    return {check_state::good, mailbox_contents(count)};
}

// Nothing: it has been made, or there was one. Else what the server says against it.
std::optional<QString> why_not_made(imap::connection &with, imap::folder_names &names)
{
    try {
        names.add(with, imap::inbox_name, folder_name);
        with.finish(); // its subscription is still under way
        return std::nullopt;
    } catch (const run_time_error &error) {
        if (!net::is(error, net::trouble::refused))
            throw;
        return error.description;
    }
}

step_end look_for_folder(imap::connection &with)
{
    imap::folder_names names;
    names.ask_for_shape(with);
    with.finish();
    const QByteArrayList folders = names.below(with, imap::inbox_name);
    if (std::any_of(folders.begin(), folders.end(), [&names](const QByteArray &folder) {
            return names.last_part(folder).compare(folder_name, Qt::CaseInsensitive) == 0;
        }))
        return {check_state::good, QStringLiteral("It is there; fetched mail moves to it.")};
    if (const auto reason = why_not_made(with, names))
        return {check_state::failed,
                QStringLiteral("There is no such folder, and the server does not let it be made. Make a folder "
                               "Tessaly_Inbox in your mailbox yourself. ") +
                    *reason};
    return {check_state::good, QStringLiteral("It was missing and has been made; fetched mail moves to it.")};
}

step_end look_at_numbers(pop3::dialogue &with, qlonglong count)
{
    const pop3::answer said =
        count > 0 ? with.ask("UIDL 1", pop3::form::one_line) : with.ask("UIDL", pop3::form::many_lines);
    if (said.said == pop3::fate::yes)
        return {check_state::good, QStringLiteral("The server names its mails, so that each is fetched once.")};
    return {check_state::failed,
            QStringLiteral("The server does not name its mails (UIDL), so new ones cannot be told from old ones. Use "
                           "IMAP if your provider offers it.")};
}

}

bool check_imap(check_run &run)
{
    const std::unique_ptr<imap::connection> line = open_imap(run);
    if (!line)
        return false;
    return run.step(QStringLiteral("Inbox"), [&line] { return look_at_inbox(*line); }) &&
           run.step(QStringLiteral("Folder Tessaly_Inbox"), [&line] {
               const step_end how = look_for_folder(*line);
               line->ask("LOGOUT", {}, {});
               line->flush();
               return how;
           });
}

bool check_pop3(check_run &run)
{
    const std::unique_ptr<pop3::dialogue> line = open_pop3(run);
    if (!line)
        return false;
    qlonglong count = 0;
    return run.step(QStringLiteral("Inbox"), [&line, &count]() -> step_end {
        const pop3::answer said = line->ask("STAT", pop3::form::one_line);
        if (said.said != pop3::fate::yes)
            return refusal(QStringLiteral("The server does not open the mailbox."), pop3::words_for_user(said));
        count = said.words.split(' ').constFirst().toLongLong();
        return {check_state::good, mailbox_contents(count)};
    }) && run.step(QStringLiteral("Names of the mails"), [&line, count] {
        const step_end how = look_at_numbers(*line, count);
        line->quit();
        return how;
    });
}

}
