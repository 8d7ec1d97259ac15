#include "platform/real/imap/mail_list.h"
#include <algorithm>

namespace imap {

std::vector<listed_mail>::iterator mail_list::place_of(quint32 uid)
{
    if (mails.empty() || mails.back().uid < uid)
        return mails.end();
    return std::lower_bound(mails.begin(), mails.end(), uid,
                            [](const listed_mail &mail, quint32 number) { return mail.uid < number; });
}

listed_mail *mail_list::find(quint32 uid)
{
    const auto place = place_of(uid);
    return place != mails.end() && place->uid == uid && !place->gone ? &*place : nullptr;
}

const listed_mail *mail_list::find(quint32 uid) const
{
    return const_cast<mail_list *>(this)->find(uid);
}

void mail_list::clear()
{
    *this = {};
}

void mail_list::add(listed_mail mail)
{
    const quint32 uid = mail.uid;
    set_next_uid(uid == 0xFFFFFFFF ? uid : uid + 1);
    const auto place = place_of(uid);
    const bool is_there = place != mails.end() && place->uid == uid;
    const bool in_order = is_there && !place->gone;
    if (mail.head_known)
        untested.push_back(uid);
    if (is_there)
        *place = std::move(mail);
    else
        mails.insert(place, std::move(mail));
    if (!in_order)
        order.insert(std::lower_bound(order.begin(), order.end(), uid), uid);
}

bool mail_list::remove_number(quint64 number)
{
    if (number == 0 || number > order.size())
        return false;
    const quint32 uid = order[size_t(number - 1)];
    order.erase(order.begin() + qsizetype(number - 1));
    place_of(uid)->gone = any_gone = true;
    removed.push_back(uid);
    return true;
}

void mail_list::remove(const std::vector<uid_range> &uids)
{
    for (const uid_range &range : uids)
        for (auto place = place_of(range.first); place != mails.end() && place->uid <= range.last; ++place)
            if (!std::exchange(place->gone, true)) {
                any_gone = true;
                removed.push_back(place->uid);
            }
    std::erase_if(order, [&](quint32 uid) { return holds(uids, uid); });
}

void mail_list::keep_only(const std::vector<quint32> &ascending)
{
    std::vector<uid_range> lost;
    for (const quint32 uid : order)
        if (!std::binary_search(ascending.begin(), ascending.end(), uid))
            lost.push_back({uid, uid});
    remove(lost);
    tidy();
    std::vector<listed_mail> all;
    all.reserve(ascending.size());
    auto known = mails.begin();
    for (const quint32 uid : ascending) {
        while (known != mails.end() && known->uid < uid)
            ++known;
        const bool is_known = known != mails.end() && known->uid == uid;
        if (!is_known)
            headless.push_back(uid);
        all.push_back(is_known ? std::move(*known) : listed_mail{.uid = uid, .to = {}, .subject = {}});
    }
    mails = std::move(all);
    order = ascending;
    std::sort(headless.begin(), headless.end());
    if (!ascending.empty())
        set_next_uid(ascending.back() == 0xFFFFFFFF ? ascending.back() : ascending.back() + 1);
}

void mail_list::tidy()
{
    if (std::exchange(any_gone, false))
        std::erase_if(mails, [](const listed_mail &mail) { return mail.gone; });
}

std::vector<quint32> mail_list::without_head()
{
    std::erase_if(headless, [this](quint32 uid) {
        const listed_mail *mail = find(uid);
        return !mail || mail->head_known;
    });
    return headless;
}

quint32 mail_list::first_without_head()
{
    const auto first = std::find_if(headless.begin(), headless.end(), [this](quint32 uid) {
        const listed_mail *mail = find(uid);
        return mail && !mail->head_known;
    });
    headless.erase(headless.begin(), first);
    return headless.empty() ? 0 : headless.front();
}

quint32 mail_list::last_with_head() const
{
    const auto last =
        std::find_if(mails.rbegin(), mails.rend(), [](const listed_mail &mail) { return mail.head_known; });
    return last == mails.rend() ? 0 : last->uid;
}

std::vector<quint32> mail_list::take_removed()
{
    return std::exchange(removed, {});
}

std::vector<quint32> mail_list::wanted(const outlook::wanted_mails &wanted_ones)
{
    tidy();
    if (wanted_ones.key.isEmpty() || wanted_ones.key != key) {
        wanted_uids.clear();
        untested = order;
        key = wanted_ones.key;
    }
    for (const quint32 uid : std::exchange(untested, {})) {
        const listed_mail *mail = find(uid);
        if (mail && mail->head_known && wanted_ones.test(QString::fromUtf8(mail->to), QString::fromUtf8(mail->subject)))
            wanted_uids.push_back(uid);
    }
    std::erase_if(wanted_uids, [&](quint32 uid) { return !find(uid); });
    std::sort(wanted_uids.begin(), wanted_uids.end());
    wanted_uids.erase(std::unique(wanted_uids.begin(), wanted_uids.end()), wanted_uids.end());
    return wanted_uids;
}

}
