// The side of outbox_shelf.h that the delivery uses.
#include "platform/clock.h"
#include "platform/real/outbox/outbox_shelf.h"
#include <limits>

namespace outbox {

namespace {

constexpr qint64 until_unread_is_due = 60; // seconds

}

void outbox_shelf::delivery_begins()
{
    const std::scoped_lock lock(writing, guard);
    delivering = settled = false; // a journal may have been left
    settle_now();
    if (!settled)
        throw run_time_error{70, QStringLiteral("Permission denied: ") + files.folder()};
    delivering = true;
}

void outbox_shelf::delivery_ends()
{
    const std::lock_guard lock(guard);
    delivering = settled = false;
}

void outbox_shelf::promote(qint64 moment)
{
    while (!later.empty() && later.begin()->first <= moment) {
        const QString id = later.begin()->second;
        later.erase(later.begin());
        (mails.at(id).mail.Kind == mail_kind::mailing ? mailings : urgent).insert(id);
    }
}

void outbox_shelf::make_all_due()
{
    const std::lock_guard lock(guard);
    load();
    for (const auto &[moment, id] : later)
        mails.at(id).mail.next_try = 0;
    promote(std::numeric_limits<qint64>::max());
}

QStringList outbox_shelf::next_due(qint64 moment, qsizetype most_mailings, qsizetype most)
{
    const std::lock_guard lock(guard);
    load();
    promote(moment);
    QStringList ids;
    for (auto id = urgent.begin(); id != urgent.end() && ids.size() < most; ++id)
        ids.append(*id);
    qsizetype allowed = qMin(most_mailings, most - ids.size());
    for (auto id = mailings.begin(); id != mailings.end() && allowed > 0; ++id, --allowed)
        ids.append(*id);
    return ids;
}

qint64 outbox_shelf::next_moment()
{
    const std::lock_guard lock(guard);
    const qint64 next_try = later.empty() ? 0 : later.begin()->first;
    if (!since_look.isValid())
        return next_try;
    const qint64 next_look = seconds_now() + until_unread_is_due;
    return next_try == 0 ? next_look : qMin(next_try, next_look);
}

std::optional<record> outbox_shelf::claim(const QString &id)
{
    const std::lock_guard lock(guard);
    const auto at = mails.find(id);
    if (at == mails.end() || at->second.claimed || state_of(at->second.mail) != mail_state::waiting)
        return std::nullopt;
    at->second.claimed = true;
    queue(at->second.mail, false);
    return at->second.mail;
}

void outbox_shelf::put_back(const record &mail)
{
    const std::lock_guard lock(guard);
    put(mail, files.mark_of(mail.id));
}

void outbox_shelf::keep(const record &mail)
{
    const std::lock_guard lock(guard);
    put(mail, files.mark_of(mail.id));
    rewrite(mail);
}

void outbox_shelf::gone(const QString &id)
{
    const std::lock_guard lock(guard);
    leaving.insert(id);
    if (const auto at = mails.find(id); at != mails.end())
        take(at);
}

bool outbox_shelf::clear(const QString &id)
{
    if (!files.remove(id)) // the lock is free: this may wait for the disk
        return false;
    const std::lock_guard lock(guard);
    leaving.remove(id);
    return true;
}

}
