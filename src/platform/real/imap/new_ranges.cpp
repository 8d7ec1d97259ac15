// New mails, of which nothing is known: small ones come whole, and are tested here.
#include "platform/real/imap/body_ranges.h"
#include "platform/real/imap/range_limits.h"
#include <algorithm>

namespace imap {

namespace {

constexpr size_t first_range = 50;  // tells whether it pays
constexpr int new_ranges_ahead = 4; // none of them is bigger than 8 MiB, and all may have to wait for one big mail

}

body_ranges::range body_ranges::next_new_range()
{
    range next;
    next.is_new = true;
    const bool waits_for_first = !knows_fresh && fresh_at > 0;
    if (heads_come_first || waits_for_first || under_way >= new_ranges_ahead)
        return next;
    const qint64 size = fresh_came > 0 ? fresh_bytes / fresh_came + 1 : big_mail;
    const size_t most = knows_fresh ? mails_a_range : first_range;
    for (; fresh_at < fresh.size() && next.uids.size() < most && next.bytes + size <= bytes_a_range; ++fresh_at)
        if (box.list.find(fresh[fresh_at])) {
            next.uids.push_back(fresh[fresh_at]);
            next.bytes += size;
        }
    return next;
}

bool body_ranges::is_wanted(quint32 uid) const
{
    const listed_mail *mail = std::as_const(box.list).find(uid);
    return mail && mail->head_known && test(QString::fromUtf8(mail->to), QString::fromUtf8(mail->subject));
}

void body_ranges::take_new(range &of, const fetched_mail &mail)
{
    const qint64 size = mail.body->size();
    if (size >= big_mail) {
        ++of.big;
        arrived.push_back({mail.uid, {}, false, false});
        return;
    }
    ++of.small;
    ++fresh_came;
    fresh_bytes += size;
    box.learn(mail, *mail.body, size);
    if (!is_wanted(mail.uid))
        return;
    ++of.wanted;
    bytes_arrived += size;
    arrived.push_back({mail.uid, mail.body->toByteArray()});
}

// Where most are not wanted, or are big, it is less to read the heads first.
void body_ranges::end_new(range &of, bool is_refused)
{
    knows_fresh = true;
    heads_come_first =
        heads_come_first || is_refused || 2 * of.wanted < of.small || 10 * of.big > of.small || of.small == 0;
    if (is_refused)
        heads_first.insert(heads_first.end(), of.uids.begin(), of.uids.end());
    save();
}

// Before anything is made of a mail, the cache has its time.
void body_ranges::save()
{
    box.save();
    ready = arrived.size();
}

void body_ranges::ask_for_big_ones()
{
    std::vector<quint32> unknown;
    for (const arrived_mail &mail : arrived)
        if (const listed_mail *listed = mail.was_asked ? nullptr : box.list.find(mail.uid);
            listed && !listed->head_known)
            unknown.push_back(mail.uid);
    if (!unknown.empty()) {
        std::sort(unknown.begin(), unknown.end());
        box.fetch_heads(uid_set(unknown));
        save();
    }
    arrived_mail &first = arrived.front();
    if (!is_wanted(first.uid))
        return lose_place(first.uid);
    first.was_asked = true;
    range its;
    its.uids = {first.uid};
    its.bytes = box.list.find(first.uid)->size;
    its.is_huge = its.bytes > most_literal_bytes;
    ask(std::move(its));
}

// The new ones that do not come whole: heads now, and of the wanted ones the bodies as of known mails.
void body_ranges::read_other_heads()
{
    std::vector<quint32> uids = std::exchange(heads_first, {});
    uids.insert(uids.end(), fresh.begin() + qsizetype(fresh_at), fresh.end());
    fresh_at = fresh.size();
    std::sort(uids.begin(), uids.end());
    box.fetch_heads(uid_set(uids));
    save();
    for (const quint32 uid : uids) {
        const listed_mail *mail = box.list.find(uid);
        if (mail && !mail->head_known)
            refused.push_back(uid);
        if (is_wanted(uid))
            waiting.push_back(uid);
    }
}

}
