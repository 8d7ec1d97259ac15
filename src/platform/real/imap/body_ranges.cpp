// Known mails: what is asked for, and what comes. New mails: new_ranges.cpp.
#include "platform/real/imap/body_ranges.h"
#include "platform/real/imap/range_limits.h"
#include <algorithm>

namespace imap {

namespace {

constexpr qint64 presumed_size = 64 * 1024;             // of a mail that the server tells no size of
constexpr int ranges_ahead = 2;                         // however big they are
constexpr int small_ranges_ahead = 8;                   // so that the server has bodies sent before it comes to a move
constexpr qint64 most_bytes_waiting = 40 * 1024 * 1024; // only a server that lies about sizes gets there

}

void body_ranges::begin(const std::vector<quint32> &wanted, const std::vector<quint32> &new_mails,
                        wanted_test wanted_ones)
{
    stop();
    waiting = wanted;
    fresh = new_mails;
    test = std::move(wanted_ones);
    connected = box.times_connected();
    ask_ahead();
}

void body_ranges::stop()
{
    *is_current = false;
    is_current = std::make_shared<bool>(true);
    waiting.clear();
    one_by_one.clear();
    fresh.clear();
    heads_first.clear();
    arrived.clear();
    refused.clear();
    at = fresh_at = ready = 0;
    knows_fresh = heads_come_first = false;
    fresh_bytes = fresh_came = 0;
    bytes_arrived = bytes_under_way = 0;
    under_way = 0;
}

// As many mails as their sizes allow; empty at the end.
body_ranges::range body_ranges::next_range()
{
    range next;
    const auto size_of = [this](quint32 uid) {
        const listed_mail *mail = box.list.find(uid);
        return !mail ? 0 : mail->size ? qint64(mail->size) : presumed_size;
    };
    if (!one_by_one.empty()) {
        next.uids.push_back(one_by_one.back());
        one_by_one.pop_back();
        next.is_huge = size_of(next.uids.front()) > most_literal_bytes;
        return next;
    }
    for (; at < waiting.size() && next.uids.size() < mails_a_range; ++at) {
        const qint64 size = size_of(waiting[at]);
        if (size == 0)
            continue; // gone meanwhile
        if (!next.uids.empty() && next.bytes + size > bytes_a_range)
            break;
        next.uids.push_back(waiting[at]);
        next.bytes += size;
    }
    next.is_huge = next.uids.size() == 1 && next.bytes > most_literal_bytes;
    return next.uids.empty() ? next_new_range() : next;
}

bool body_ranges::may_ask() const
{
    return bytes_arrived < bytes_a_range &&
           (under_way < ranges_ahead || (under_way < small_ranges_ahead && bytes_under_way < bytes_a_range));
}

void body_ranges::ask_ahead()
{
    while (may_ask()) {
        range next = next_range();
        if (next.uids.empty())
            return;
        ask(std::move(next));
    }
}

void body_ranges::ask(range wanted)
{
    ++under_way;
    bytes_under_way += wanted.bytes;
    const qint64 most = wanted.is_huge ? most_literal_bytes : wanted.is_new ? big_mail : 0;
    const QByteArray part = most ? "<0." + QByteArray::number(most) + '>' : QByteArray();
    const char *const items = wanted.is_new ? " (UID INTERNALDATE BODY.PEEK[]" : " (UID BODY.PEEK[]";
    const QByteArray command = "UID FETCH " + uid_set(wanted.uids) + items + part + ')';
    const auto its = std::make_shared<range>(std::move(wanted));
    const std::shared_ptr<bool> still = is_current;
    box.server().ask(
        command,
        [this, its, still](const response &from, const answer &said) { return *still && take(*its, from, said); },
        [this, its, still](const answer &said) {
            if (*still)
                end(*its, said);
        });
}

bool body_ranges::take(range &of, const response &from, const answer &said)
{
    if (said.kind != answer_kind::numbered || !is(said.name, "FETCH"))
        return false;
    const fetched_mail mail = read_fetched(from, said);
    if (!mail.body || mail.uid == 0)
        return false;
    const auto its = std::lower_bound(of.uids.begin(), of.uids.end(), mail.uid);
    if (its == of.uids.end() || *its != mail.uid)
        return false;
    of.uids.erase(its);
    if (of.is_new)
        take_new(of, mail);
    else
        keep(mail.uid, *mail.body);
    return true;
}

// At its place, if one was kept for it.
void body_ranges::keep(quint32 uid, QByteArrayView bytes)
{
    if (bytes_arrived + bytes.size() > most_bytes_waiting)
        return lose_place(uid);
    bytes_arrived += bytes.size();
    if (has_place(uid)) {
        arrived.front().bytes = bytes.toByteArray();
        arrived.front().is_here = true;
        return;
    }
    arrived.push_back({uid, bytes.toByteArray()});
    ready += ready + 1 == arrived.size();
}

bool body_ranges::has_place(quint32 uid) const
{
    return ready > 0 && arrived.front().uid == uid && !arrived.front().is_here;
}

void body_ranges::lose_place(quint32 uid)
{
    if (!has_place(uid))
        return;
    arrived.pop_front();
    --ready;
}

// What did not come is gone, when the server says that all is well. Otherwise one bad mail may have kept the others
// back, so each is asked for by itself, once.
void body_ranges::end(range &of, const answer &said)
{
    --under_way;
    bytes_under_way -= of.bytes;
    if (!of.uids.empty())
        box.doubt();
    const bool is_refused = said.said != status::ok && !is(said.code, "EXPUNGEISSUED");
    if (of.is_new)
        return end_new(of, is_refused);
    if (of.uids.size() == 1)
        lose_place(of.uids.front());
    if (!is_refused)
        return;
    if (of.uids.size() > 1)
        one_by_one.insert(one_by_one.begin(), of.uids.rbegin(), of.uids.rend());
    else if (!of.uids.empty() && box.list.find(of.uids.front()))
        refused.push_back(of.uids.front());
}

std::optional<arrived_mail> body_ranges::next()
{
    if (connected != box.times_connected())
        stop(); // UIDs of another connection may mean other mails
    while (true) {
        ask_ahead();
        if (ready > 0 && arrived.front().is_here) {
            arrived_mail mail = std::move(arrived.front());
            arrived.pop_front();
            --ready;
            bytes_arrived -= mail.bytes.size();
            return mail;
        }
        if (ready > 0 && !arrived.front().was_asked)
            ask_for_big_ones();
        else if (under_way > 0)
            box.server().listen();
        else if (!heads_first.empty() || (heads_come_first && fresh_at < fresh.size()))
            read_other_heads();
        else
            return std::nullopt;
    }
}

}
