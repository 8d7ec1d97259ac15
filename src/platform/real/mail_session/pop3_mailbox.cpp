#include "platform/real/mail_session/pop3_mailbox.h"
#include "platform/app_folder.h"
#include "platform/clock.h"
#include "platform/real/mail/mail_file.h"
#include "platform/real/mail/mime_body.h"
#include "platform/real/mail_session/pop3_login.h"
#include <QHash>
#include <algorithm>

namespace pop3 {

namespace {

constexpr qsizetype longest_listing = 32 * 1024 * 1024;
constexpr qsizetype longest_header = 1024 * 1024;
constexpr size_t headers_a_commit = 2000;
constexpr int texts_a_commit = 200;
constexpr int most_refused_tries = 50;
constexpr qint64 seconds_between_logins = 60;
// "Device I/O error": a failure of the network would end the whole fetch.
constexpr quint32 of_one_mail = 57;

QByteArray command(const char *verb, const listed_mail &mail)
{
    return verb + QByteArray::number(mail.number);
}

}

mailbox::mailbox(const mail::client_settings &from, const net::patience &how_long, memory &of_process)
    : settings(from),
      patience(how_long),
      remembered(of_process),
      name(name_of_mailbox(from.incoming)),
      kept(app_path(u"\\pop3memory.sqlite"), name)
{
    for (const QByteArray &former : former_names_of_mailbox(from.incoming))
        kept.take_over(former);
    if (last_listing_will_do()) {
        mails = remembered.mails;
    } else {
        connect();
        list();
    }
    pass_over = remembered.refused;
}

bool mailbox::last_listing_will_do() const
{
    if (!patience.is_tick || remembered.mailbox != name || !remembered.all_have_ids)
        return false;
    const qint64 passed = remembered.last_login.secsTo(now());
    return passed >= 0 && passed < seconds_between_logins;
}

void mailbox::connect()
{
    line = log_in(settings, patience);
    if (remembered.mailbox != name)
        remembered = {};
    remembered.mailbox = name;
    remembered.last_login = now();
    remembered.mails.clear();
    remembered.all_have_ids = false;
}

std::vector<listed_mail> mailbox::listing()
{
    answer said = line->ask("UIDL", form::many_lines, longest_listing);
    const bool with_ids = said.said == fate::yes;
    if (!with_ids)
        said = line->ask("LIST", form::many_lines, longest_listing);
    if (said.said != fate::yes)
        throw line->refusal(said);
    if (said.lines.size() >= longest_listing)
        said.lines.truncate(said.lines.lastIndexOf('\n') + 1);
    return listing_in(said.lines, with_ids);
}

void mailbox::list()
{
    mails = listing();
    const bool all_have_ids =
        std::none_of(mails.begin(), mails.end(), [](const listed_mail &mail) { return mail.key.isEmpty(); });
    learn_headers();
    note_shared_keys();
    QSet<QByteArray> keys;
    for (const listed_mail &mail : mails)
        keys.insert(mail.key);
    kept.forget_all_but(keys);
    try_refused();
    kept.commit();
    remembered.refused.intersect(keys);
    remembered.mails = mails;
    remembered.all_have_ids = all_have_ids;
}

void mailbox::learn_headers()
{
    const QSet<QByteArray> known = kept.keys();
    std::vector<listed_mail *> unknown;
    for (listed_mail &mail : mails)
        if (mail.key.isEmpty() || !known.contains(mail.key))
            unknown.push_back(&mail);
    for (size_t from = 0; from < unknown.size(); from += headers_a_commit) {
        const size_t end = std::min(unknown.size(), from + headers_a_commit);
        learn_headers({unknown.begin() + qsizetype(from), unknown.begin() + qsizetype(end)});
        kept.commit();
    }
    // What the server lists and does not give, somebody took away meanwhile.
    std::erase_if(mails, [](const listed_mail &mail) { return mail.number == 0; });
}

// A server need not know TOP; then, or where TOP fails, the whole mail comes, of which the header is kept.
void mailbox::learn_headers(const std::vector<listed_mail *> &of)
{
    std::vector<listed_mail *> left = of;
    for (const auto &[verb, tail] : {std::pair("TOP ", " 0"), std::pair("RETR ", "")}) {
        QByteArrayList commands;
        for (const listed_mail *mail : left)
            commands.append(command(verb, *mail) + tail);
        std::vector<listed_mail *> refused;
        line->ask_all(commands, longest_header, [&](qsizetype index, const answer &said) {
            listed_mail *mail = left[size_t(index)];
            if (said.said == fate::yes)
                learn_header(*mail, said.lines);
            else
                refused.push_back(mail);
        });
        left = std::move(refused);
    }
    for (listed_mail *mail : left)
        mail->number = 0;
}

void mailbox::learn_header(listed_mail &mail, const QByteArray &header)
{
    const mime::header_block head = mime::read_header_block(header);
    if (mail.key.isEmpty())
        mail.key = key_of_header(header.first(head.body_at));
    reading::mail_facts facts = reading::facts_in(head);
    if (!facts.received.isValid())
        facts.received = now();
    kept.keep(mail.key, facts);
}

// Two mails whose headers are the same letter by letter may differ in their text.
void mailbox::note_shared_keys()
{
    QHash<QByteArray, int> times;
    for (const listed_mail &mail : mails)
        ++times[mail.key];
    for (listed_mail &mail : mails)
        mail.is_shared = times.value(mail.key) > 1;
}

void mailbox::try_refused()
{
    int tries = 0;
    for (const listed_mail &mail : mails) {
        if (!remembered.refused.contains(mail.key) || ++tries > most_refused_tries)
            continue;
        const answer said = line->ask(command("RETR ", mail), form::many_lines, maildir::longest_mail);
        if (said.said == fate::yes)
            remembered.refused.remove(mail.key);
    }
}

// Numbers hold for one conversation only.
void mailbox::be_connected()
{
    if (line)
        return;
    const std::vector<listed_mail> before = remembered.mails;
    connect();
    QHash<QByteArray, int> numbers;
    for (const listed_mail &mail : listing())
        numbers.insert(mail.key, mail.number);
    for (listed_mail &mail : mails)
        mail.number = numbers.value(mail.key);
    remembered.mails = before;
    remembered.all_have_ids = true;
}

template <typename Read>
auto mailbox::reading_whole_mailbox(Read read)
{
    if (broken)
        throw *broken;
    try {
        return read();
    } catch (const run_time_error &failure) {
        if (failure.number != of_one_mail)
            broken = std::make_unique<run_time_error>(failure);
        throw;
    }
}

reading::mail_facts mailbox::facts(int index)
{
    return reading_whole_mailbox([&] {
        listed_mail &mail = mails.at(size_t(index));
        if (pass_over.contains(mail.key))
            return reading::mail_facts();
        std::optional<reading::mail_facts> facts = kept.facts(mail.key);
        if (!facts) { // the memory was damaged meanwhile
            be_connected();
            learn_headers({&mail});
            facts = kept.facts(mail.key);
        }
        return facts.value_or(reading::mail_facts());
    });
}

QString mailbox::text(int index)
{
    return reading_whole_mailbox([&] {
        const listed_mail &mail = mails.at(size_t(index));
        std::optional<QString> known = mail.is_shared ? std::nullopt : kept.text(mail.key);
        return known ? *known : fetched_text(mail);
    });
}

QString mailbox::fetched_text(const listed_mail &mail)
{
    be_connected();
    const answer said = line->ask(command("RETR ", mail), form::many_lines, maildir::longest_mail);
    if (said.said != fate::yes) {
        remembered.refused.insert(mail.key);
        throw run_time_error{of_one_mail, line->refusal(said).description};
    }
    const QString text = mime::body_text(said.lines, mime::read_header_block(said.lines));
    if (!mail.is_shared)
        kept.keep_text(mail.key, text);
    if (++texts_since_commit % texts_a_commit == 0)
        kept.commit();
    return text;
}

void mailbox::say_goodbye()
{
    kept.commit();
    if (line && !broken)
        line->quit();
    line.reset();
}

}
