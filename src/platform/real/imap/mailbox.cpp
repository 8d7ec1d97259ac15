#include "platform/real/imap/mailbox.h"
#include "platform/clock.h"
#include "platform/real/imap/modified_utf7.h"
#include "platform/real/mail/access_token.h"
#include "platform/real/mail/mime_parse.h"
#include <algorithm>

namespace imap {

namespace {

constexpr const char *head_items = " (UID INTERNALDATE RFC822.SIZE BODY.PEEK[HEADER.FIELDS (TO SUBJECT)])";
constexpr size_t heads_a_save = 2000;
constexpr quint64 most_mails = 5'000'000;
constexpr quint64 many_new = 50; // from so many on it pays to ask for heads and bodies at once

qint64 wall_seconds(std::optional<qint64> moment)
{
    return (moment ? wall_clock(*moment) : now()).toSecsSinceEpoch();
}

// A token that was good an hour ago may be none now: one is fetched anew, once.
std::unique_ptr<connection> logged_in(const place_source &where, const connection::hears &unasked)
{
    const net::place first = where();
    try {
        return std::make_unique<connection>(first, unasked);
    } catch (const run_time_error &failure) {
        if (first.token.isEmpty() || !net::is(failure, net::trouble::login_refused))
            throw;
        mail::access_token_refused(first.token);
    }
    return std::make_unique<connection>(where(), unasked);
}

}

mailbox::mailbox(place_source place, QByteArray server_and_user, QByteArray name, std::shared_ptr<mail_cache> kept)
    : where(std::move(place)), account(std::move(server_and_user)), folder(std::move(name)), cache(std::move(kept))
{
}

void mailbox::hang_up()
{
    line.reset();
}

void mailbox::open()
{
    if (!is_open())
        connect();
}

// Round trips are what costs time here: all that can be asked at once is.
void mailbox::connect()
{
    hang_up();
    said_bye = numbers_agree = false;
    ++connections;
    line = logged_in(where, [this](const response &from, const answer &said) { return take_unasked(from, said); });
    if (!line->knows_capabilities()) {
        line->ask("CAPABILITY", {}, {});
        line->finish();
    }
    names.ask_for_shape(*line);
    select();
    bring_up_to_date();
}

void mailbox::select()
{
    if (!std::exchange(cache_was_read, true))
        saved = state = cache->read(account + '/' + folder, list);
    const bool quick = line->can("QRESYNC") && line->can("ENABLE");
    QByteArray command = "SELECT " + quoted(folder);
    if (quick) {
        line->ask("ENABLE QRESYNC", {}, {});
        if (state.uid_validity != 0 && state.highest_change != 0)
            command += " (QRESYNC (" + QByteArray::number(state.uid_validity) + ' ' +
                       QByteArray::number(state.highest_change) + "))";
    }
    present_validity = present_next = 0;
    exists = 0;
    std::optional<run_time_error> refused;
    const quint64 change_before = std::exchange(state.highest_change, 0);
    line->ask(command, {}, [&](const answer &said) {
        if (said.said != status::ok)
            refused = line->refusal(said);
    });
    line->finish();
    if (refused) {
        state.highest_change = change_before;
        hang_up();
        throw *refused;
    }
}

void mailbox::refresh()
{
    if (is_open()) {
        try {
            line->ask("NOOP", {}, {});
            line->finish();
            if (is_open())
                return bring_up_to_date();
        } catch (const run_time_error &failure) { // the server hung up since the last fetch: no failure yet
            if (net::is(failure, net::trouble::cancelled) || net::is(failure, net::trouble::timed_out))
                throw;
        }
    }
    connect();
}

void mailbox::take_code(const answer &said)
{
    const quint64 number = said.details.toULongLong();
    if (is(said.code, "UIDVALIDITY"))
        present_validity = quint32(number);
    else if (is(said.code, "UIDNEXT"))
        present_next = quint32(number);
    else if (is(said.code, "HIGHESTMODSEQ") && said.kind == answer_kind::status)
        state.highest_change = number;
}

bool mailbox::take_unasked(const response &from, const answer &said)
{
    if (said.kind == answer_kind::status || said.kind == answer_kind::tagged) {
        said_bye = said_bye || said.said == status::bye;
        take_code(said);
        return false; // a command may wait for it, too
    } else if (said.kind == answer_kind::numbered && is(said.name, "EXISTS")) {
        exists = said.number;
    } else if (said.kind == answer_kind::numbered && is(said.name, "EXPUNGE")) {
        if (numbers_agree)
            list.remove_number(said.number);
        exists -= exists > 0;
    } else if (said.kind == answer_kind::named && is(said.name, "VANISHED")) {
        take_vanished(from, said);
    } else {
        return false;
    }
    return true;
}

void mailbox::take_vanished(const response &from, const answer &said)
{
    words line_words(from, said.rest_at);
    const bool earlier = line_words.opens();
    while (earlier && !line_words.at_end() && !line_words.closes())
        line_words.skip();
    const std::vector<uid_range> uids = ranges_in(line_words.atom());
    list.remove(uids);
    if (earlier)
        return;
    for (const uid_range &range : uids)
        exists -= qMin<quint64>(exists, quint64(range.last) - range.first + 1);
}

// The number of mails tells whether the list is right: new ones have UIDs of their own, and none comes back.
void mailbox::bring_up_to_date()
{
    if (exists > most_mails) {
        hang_up();
        throw net::failure(net::trouble::not_understood,
                           QStringLiteral("The mail server tells of %1 mails in one folder.").arg(exists));
    }
    if (present_validity == 0 || std::exchange(state.uid_validity, present_validity) != present_validity) {
        list.clear();
        new_heads.clear();
        copied.clear();
    }
    if (exists >= quint64(list.count()) + many_new) {
        compare_all();
        if (list_is_complete())
            list.set_next_uid(present_next);
    }
    if (!list_is_complete() || present_next > list.next_uid())
        fetch_heads(QByteArray::number(list.next_uid()) + ":*");
    const bool may_be_others = std::exchange(doubted, false) || (!numbers_agree && present_next == 0);
    for (int attempt = 0; attempt < 3 && (!list_is_complete() || (attempt == 0 && may_be_others)); ++attempt)
        compare_all();
    numbers_agree = list_is_complete();
    fetch_missing_heads();
    if (present_next > 0)
        list.set_next_uid(present_next);
    save();
}

std::vector<quint32> mailbox::unread_heads()
{
    std::vector<quint32> uids = list.without_head();
    uids.erase(uids.begin(), std::upper_bound(uids.begin(), uids.end(), list.last_with_head()));
    return uids.size() < many_new ? std::vector<quint32>() : uids;
}

void mailbox::fetch_missing_heads()
{
    std::vector<quint32> missing = list.without_head();
    missing.resize(missing.size() - unread_heads().size());
    if (!missing.empty())
        fetch_heads(uid_set(missing));
}

void mailbox::fetch_heads(const QByteArray &uids)
{
    if (exists == 0)
        return;
    quint64 heads = 0;
    line->ask(
        "UID FETCH " + uids + head_items,
        [this, &heads](const response &from, const answer &said) { return heads++ <= exists && take_head(from, said); },
        {});
    while (line->is_busy()) {
        line->listen();
        if (new_heads.size() >= heads_a_save)
            save();
    }
}

bool mailbox::take_head(const response &from, const answer &said)
{
    if (said.kind != answer_kind::numbered || !is(said.name, "FETCH"))
        return false;
    const fetched_mail mail = read_fetched(from, said);
    if (mail.uid == 0 || !mail.head)
        return false;
    const listed_mail *known = list.find(mail.uid); // "n:*" means the last mail even where n lies behind it
    if (known && known->head_known)
        return false;
    learn(mail, *mail.head, qint64(qMin<quint64>(mail.size.value_or(0), 0xFFFFFFFF)));
    return true;
}

const listed_mail *mailbox::learn(const fetched_mail &mail, QByteArrayView header, qint64 size)
{
    const listed_mail *known = list.find(mail.uid);
    const mime::header_block head = mime::read_header_block(header);
    listed_mail added{mail.uid,
                      quint32(size),
                      wall_seconds(mail.moment),
                      mime::to_line(head).toUtf8(),
                      mime::subject_of(head).toUtf8(),
                      true};
    added.told = known && known->told;
    list.add(std::move(added));
    new_heads.push_back(mail.uid);
    return list.find(mail.uid);
}

void mailbox::compare_all()
{
    std::vector<uid_range> ranges;
    const auto read = [&ranges](const response &from, const answer &said) {
        const bool is_it = said.kind == answer_kind::named && (is(said.name, "SEARCH") || is(said.name, "ESEARCH"));
        if (is_it && ranges.empty())
            ranges = searched_uids(from, said);
        else
            return false;
        return true;
    };
    bool good = false;
    line->ask(line->can("ESEARCH") ? "UID SEARCH RETURN (ALL) ALL" : "UID SEARCH ALL", read,
              [&good](const answer &said) { good = said.said == status::ok; });
    line->finish();
    std::vector<quint32> uids;
    for (const uid_range &range : ranges)
        for (quint64 uid = range.first; uid <= range.last && uids.size() <= exists; ++uid)
            uids.push_back(quint32(uid));
    if (good && uids.size() <= exists) // more than there are is no answer
        list.keep_only(uids);
}

bool mailbox::was_copied(quint32 uid) const
{
    return std::find(copied.begin(), copied.end(), uid) != copied.end();
}

void mailbox::save()
{
    const quint32 without_head = list.first_without_head(); // whoever reads it from disk asks for the others again
    state.next_uid = without_head ? without_head : list.next_uid();
    const std::vector<quint32> removed = list.take_removed();
    std::vector<const listed_mail *> added;
    for (const quint32 uid : std::exchange(new_heads, {}))
        if (const listed_mail *mail = list.find(uid))
            added.push_back(mail);
    if (added.empty() && removed.empty() && state == saved)
        return;
    cache->write(account + '/' + folder, state, added, removed);
    saved = state;
}

}
