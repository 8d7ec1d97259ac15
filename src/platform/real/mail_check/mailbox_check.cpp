#include "platform/real/mail_check/mailbox_check.h"
#include "platform/mail_providers.h"
#include "platform/real/mail_check/server_search.h"
#include "platform/real/mail_check/talk.h"
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

// The connection that is left open; nothing where signing in failed. The settings found get its place.
std::unique_ptr<net::stream> open_mailbox(check_run &run, net::protocol speaks)
{
    const address_guess guess = guess_from_address(run.address());
    search_task task;
    task.speaks = speaks;
    task.names = {QStringLiteral("Mail server"), QStringLiteral("Encryption"), QStringLiteral("Signing in")};
    task.wanted = run.request.settings.incoming;
    task.guesses = speaks == net::protocol::imap ? guess.imap : guess.pop3;
    task.note = guess.note;
    task.password = run.request.password;
    std::unique_ptr<net::stream> line;
    const server place = search_server(run, task, [&line](const net::place &where, const net::patience &patience) {
        line = std::make_unique<net::stream>(where, patience);
    });
    if (line) {
        line->set_patience(run.patience);
        run.outcome.found.incoming = place;
    }
    return line;
}

struct listed_folder {
    QByteArray delimiter, name;
};

// A quoted text or an atom at the head of text, which loses it.
QByteArray take_word(QByteArray &text)
{
    QByteArray word;
    if (!text.startsWith('"')) {
        const qsizetype end = text.indexOf(' ');
        word = end < 0 ? text : text.first(end);
        text = end < 0 ? QByteArray() : text.sliced(end + 1);
        return word;
    }
    qsizetype at = 1;
    for (; at < text.size() && text[at] != '"'; ++at) {
        if (text[at] == '\\' && at + 1 < text.size())
            ++at;
        word.append(text[at]);
    }
    text = text.sliced(qMin(at + 1, text.size())).trimmed();
    return word;
}

// LIST (\HasNoChildren) "." INBOX
std::optional<listed_folder> listed(const QByteArray &line)
{
    const qsizetype behind_flags = line.indexOf(')');
    if (!line.toUpper().startsWith("LIST ") || behind_flags < 0)
        return std::nullopt;
    QByteArray rest = line.sliced(behind_flags + 1).trimmed();
    const bool is_flat = rest.toUpper().startsWith("NIL ");
    const QByteArray delimiter = take_word(rest);
    return listed_folder{is_flat ? QByteArray() : delimiter, take_word(rest)};
}

bool has_folder(talk &with, const QByteArray &pattern, const QByteArray &name)
{
    for (const QByteArray &line : with.ask_imap("LIST \"\" \"" + pattern + '"').untagged)
        if (const auto folder = listed(line); folder && folder->name.toUpper() == name.toUpper())
            return true;
    return false;
}

step_end look_at_inbox(talk &with)
{
    const talk::imap_answer answer = with.ask_imap("EXAMINE INBOX");
    if (!answer.ok)
        return refusal(QStringLiteral("The server does not open the Inbox."), answer.words);
    qlonglong count = 0;
    for (const QByteArray &line : answer.untagged)
        if (line.toUpper().endsWith(" EXISTS"))
            count = line.first(line.indexOf(' ')).toLongLong();
    return {check_state::good, mailbox_contents(count)};
}

// On some servers every folder stands below the Inbox.
step_end look_for_folder(talk &with)
{
    QByteArray delimiter;
    for (const QByteArray &line : with.ask_imap("LIST \"\" INBOX").untagged)
        if (const auto folder = listed(line))
            delimiter = folder->delimiter;
    const QByteArray below = delimiter.size() == 1 && delimiter != "\"" && delimiter != "\\"
                                 ? "INBOX" + delimiter + folder_name
                                 : QByteArray();
    if (has_folder(with, "%", folder_name) || (!below.isEmpty() && has_folder(with, below, below)))
        return {check_state::good, QStringLiteral("It is there; fetched mail moves to it.")};
    talk::imap_answer made = with.ask_imap("CREATE " + folder_name);
    if (!made.ok && !below.isEmpty())
        made = with.ask_imap("CREATE \"" + below + '"');
    if (!made.ok)
        return refusal(QStringLiteral("There is no such folder, and the server does not let it be made. Make a folder "
                                      "Tessaly_Inbox in your mailbox yourself."),
                       made.words);
    return {check_state::good, QStringLiteral("It was missing and has been made; fetched mail moves to it.")};
}

step_end look_at_numbers(talk &with, qlonglong count)
{
    if (with.ask_pop3(count > 0 ? QByteArray("UIDL 1") : QByteArray("UIDL")).ok)
        return {check_state::good, QStringLiteral("The server names its mails, so that each is fetched once.")};
    return {check_state::failed,
            QStringLiteral("The server does not name its mails (UIDL), so new ones cannot be told from old ones. Use "
                           "IMAP if your provider offers it.")};
}

}

bool check_imap(check_run &run)
{
    const std::unique_ptr<net::stream> line = open_mailbox(run, net::protocol::imap);
    if (!line)
        return false;
    talk with(*line);
    const bool works = run.step(QStringLiteral("Inbox"), [&with] { return look_at_inbox(with); }) &&
                       run.step(QStringLiteral("Folder Tessaly_Inbox"), [&with] {
                           const step_end how = look_for_folder(with);
                           with.say_goodbye("Z LOGOUT");
                           return how;
                       });
    return works;
}

bool check_pop3(check_run &run)
{
    const std::unique_ptr<net::stream> line = open_mailbox(run, net::protocol::pop3);
    if (!line)
        return false;
    talk with(*line);
    qlonglong count = 0;
    return run.step(QStringLiteral("Inbox"), [&with, &count]() -> step_end {
        const talk::pop3_answer answer = with.ask_pop3("STAT");
        if (!answer.ok)
            return refusal(QStringLiteral("The server does not open the mailbox."), QString::fromUtf8(answer.words));
        count = answer.words.split(' ').constFirst().toLongLong();
        return {check_state::good, mailbox_contents(count)};
    }) && run.step(QStringLiteral("Names of the mails"), [&with, count] {
        const step_end how = look_at_numbers(with, count);
        with.say_goodbye("QUIT");
        return how;
    });
}

}
