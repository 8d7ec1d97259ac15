#include "platform/real/imap/body_ranges.h"
#include <algorithm>

namespace imap {

namespace {

constexpr size_t mails_a_range = 500;
constexpr qint64 bytes_a_range = 8 * 1024 * 1024;
constexpr qint64 presumed_size = 64 * 1024; // of a mail that the server tells no size of
constexpr int ranges_ahead = 2;
constexpr qint64 most_bytes_waiting = 40 * 1024 * 1024; // only a server that lies about sizes gets there

}

void body_ranges::begin(const std::vector<quint32> &uids)
{
    stop();
    waiting = uids;
    connected = box.times_connected();
    ask_ahead();
}

void body_ranges::stop()
{
    *is_current = false;
    is_current = std::make_shared<bool>(true);
    waiting.clear();
    one_by_one.clear();
    arrived.clear();
    refused.clear();
    at = 0;
    bytes_arrived = 0;
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
    return next;
}

void body_ranges::ask_ahead()
{
    while (under_way < ranges_ahead) {
        range next = next_range();
        if (next.uids.empty())
            return;
        ask(std::move(next));
    }
}

void body_ranges::ask(range wanted)
{
    ++under_way;
    const QByteArray part = wanted.is_huge ? "<0." + QByteArray::number(most_literal_bytes) + '>' : QByteArray();
    const QByteArray command = "UID FETCH " + uid_set(wanted.uids) + " (UID BODY.PEEK[]" + part + ')';
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
    if (bytes_arrived + mail.body->size() > most_bytes_waiting)
        return true;
    bytes_arrived += mail.body->size();
    arrived.push_back({mail.uid, mail.body->toByteArray()});
    return true;
}

// What did not come is gone, when the server says that all is well. Otherwise one bad mail may have kept the others
// back, so each is asked for by itself, once.
void body_ranges::end(range &of, const answer &said)
{
    --under_way;
    if (!of.uids.empty())
        box.doubt();
    if (said.said == status::ok || is(said.code, "EXPUNGEISSUED"))
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
    ask_ahead();
    while (arrived.empty() && under_way > 0) {
        box.server().listen();
        ask_ahead();
    }
    if (arrived.empty())
        return std::nullopt;
    arrived_mail mail = std::move(arrived.front());
    arrived.pop_front();
    bytes_arrived -= mail.bytes.size();
    return mail;
}

}
