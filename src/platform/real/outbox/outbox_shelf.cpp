#include "platform/real/outbox/outbox_shelf.h"
#include "platform/real/durable_file.h"

namespace outbox {

namespace {

constexpr qint64 until_next_look_ms = 10000; // at what could not be read

const QString doubt_of_a_kill =
    QStringLiteral("The program ended while the mail was being sent: it may or may not have gone.");

qint64 &counter_of(counts &number, mail_state state)
{
    switch (state) {
    case mail_state::held:
        return number.held;
    case mail_state::refused:
        return number.refused;
    case mail_state::unknown:
        return number.unknown;
    case mail_state::waiting:
        break;
    }
    return number.waiting;
}

record waiting_once_more(record mail)
{
    for (recipient &one : mail.left)
        one = {one.address, recipient_state::waiting, {}};
    mail.held = false;
    mail.reason.clear();
    mail.tries = 0;
    mail.first_try = mail.next_try = 0;
    return mail;
}

}

std::vector<kept_mail> outbox_shelf::contents()
{
    const std::lock_guard lock(guard);
    look(files.ids());
    std::vector<kept_mail> all;
    for (const auto &[id, one] : mails)
        all.push_back(as_kept(one.mail));
    return all;
}

counts outbox_shelf::count()
{
    const std::lock_guard lock(guard);
    load();
    return number;
}

void outbox_shelf::settle()
{
    const std::scoped_lock lock(writing, guard);
    settle_now();
}

void outbox_shelf::add(const record &mail, const QByteArray &eml)
{
    settle();
    const std::lock_guard whole(writing);
    files.write(mail, eml); // the other lock is free: this waits for the disk
    const std::lock_guard lock(guard);
    put(mail, files.mark_of(mail.id));
}

qsizetype outbox_shelf::send_again(const QStringList &ids)
{
    const std::scoped_lock lock(writing, guard);
    settle_now();
    std::vector<record> again;
    for (const QString &id : ids)
        if (const auto at = mails.find(id); at != mails.end() && !at->second.claimed)
            again.push_back(waiting_once_more(at->second.mail));
    files.replace_states(again);
    for (const record &mail : again)
        put(mail, files.mark_of(mail.id));
    return ids.size() - qsizetype(again.size());
}

qsizetype outbox_shelf::discard(const QStringList &ids)
{
    const std::scoped_lock lock(writing, guard);
    settle_now();
    qsizetype left_alone = 0;
    for (const QString &id : ids) {
        const auto at = mails.find(id);
        if (at != mails.end() && !at->second.claimed && files.remove(id))
            take(at);
        else
            ++left_alone;
    }
    if (left_alone < ids.size())
        sync_folder(files.folder()); // or a power cut would send them after all
    return left_alone;
}

// Reads what changed on disk since the last look. ids are those of the folder.
void outbox_shelf::look(const std::optional<QStringList> &ids)
{
    unread.clear();
    if (ids) {
        forget_all_but(*ids);
        for (const QString &id : *ids)
            if (!refresh(id))
                unread.insert(id);
    }
    if (!delivering)
        apply_journal(read_journal(files.folder()));
    loaded = true;
    if (ids && unread.isEmpty())
        since_look.invalidate();
    else
        since_look.start();
}

void outbox_shelf::forget_all_but(const QStringList &ids)
{
    const QSet<QString> there(ids.begin(), ids.end());
    for (auto at = mails.begin(); at != mails.end();) {
        const auto next = std::next(at);
        if (!at->second.claimed && !there.contains(at->first))
            take(at);
        at = next;
    }
}

bool outbox_shelf::refresh(const QString &id)
{
    if (leaving.contains(id))
        return true;
    const auto at = mails.find(id);
    if (at != mails.end() && (at->second.claimed || at->second.mark == files.mark_of(id)))
        return true;
    const state_reading found = files.read(id);
    if (found.mail)
        put(*found.mail, found.mark);
    else if (at != mails.end()) // what was known of it is so no more
        take(at);
    return found.is_readable;
}

void outbox_shelf::load()
{
    if (!loaded || (since_look.isValid() && since_look.hasExpired(until_next_look_ms)))
        look(files.ids());
}

bool outbox_shelf::tells_all(const journal_verdict &verdict) const
{
    return !since_look.isValid() || (!unread.isEmpty() && !unread.intersects(verdict.in_doubt));
}

void outbox_shelf::apply_journal(const journal_verdict &verdict)
{
    for (const QString &id : verdict.gone)
        if (const auto at = mails.find(id); at != mails.end())
            take(at);
    for (const QString &id : verdict.in_doubt) {
        const auto at = mails.find(id);
        if (at == mails.end() || state_of(at->second.mail) != mail_state::waiting)
            continue;
        record mail = at->second.mail;
        put_in_doubt(mail, doubt_of_a_kill);
        put(mail, at->second.mark);
    }
}

void outbox_shelf::settle_now()
{
    if (delivering || settled)
        return load();
    const std::optional<QStringList> ids = files.sweep();
    const journal_verdict verdict = read_journal(files.folder());
    look(ids);
    for (const QString &id : verdict.gone) {
        if (!files.remove(id)) // without the journal's word it would go once more
            throw run_time_error{70, QStringLiteral("Permission denied: ") + files.folder()};
        leaving.remove(id);
    }
    for (const QString &id : verdict.in_doubt)
        if (const auto at = mails.find(id); at != mails.end())
            rewrite(record(at->second.mail));
    if (!tells_all(verdict))
        return; // its word about a mail that cannot be read now is kept
    if (verdict.there)
        remove_journal(files.folder());
    settled = true;
}

void outbox_shelf::put(record mail, file_mark mark)
{
    if (const auto at = mails.find(mail.id); at != mails.end())
        take(at);
    mails[mail.id] = {mail, mark, false};
    ++counter_of(number, state_of(mail));
    queue(mail, true);
}

void outbox_shelf::take(shelf_map::iterator at)
{
    --counter_of(number, state_of(at->second.mail));
    queue(at->second.mail, false);
    mails.erase(at);
}

void outbox_shelf::queue(const record &mail, bool in)
{
    std::set<QString> &due = mail.Kind == mail_kind::mailing ? mailings : urgent;
    due.erase(mail.id);
    later.erase({mail.next_try, mail.id});
    if (!in || state_of(mail) != mail_state::waiting)
        return;
    if (mail.next_try > 0)
        later.insert({mail.next_try, mail.id});
    else
        due.insert(mail.id);
}

void outbox_shelf::rewrite(const record &mail)
{
    files.replace_states({mail});
    put(mail, files.mark_of(mail.id));
}

}
