#include "platform/real/imap/imap_walk.h"
#include "platform/real/imap/imap_item.h"

namespace imap {

namespace {

constexpr int most_told = 20; // a walk; the others wait for the next one

}

walk::walk(std::shared_ptr<mailbox> folder)
    : box(std::move(folder)), moves(std::make_shared<move_queue>(box)), bodies(*box)
{
}

qint64 walk::Count() const
{
    if (!counted)
        box->refresh();
    counted = true;
    return box->list.count();
}

outlook::MailItem *walk::Find(const QString &, const outlook::wanted_mails &wanted)
{
    current.reset();
    bodies.stop();
    moves->finish(cut);
    if (!std::exchange(counted, false))
        box->refresh();
    told = 0;
    cut.reset();
    const std::vector<quint32> unread = box->unread_heads();
    std::vector<quint32> without_head = box->list.without_head();
    without_head.resize(without_head.size() - unread.size());
    tell_unreadable(without_head);
    bodies.begin(box->list.wanted(wanted), unread, wanted.test);
    walking = true;
    return FindNext();
}

outlook::MailItem *walk::FindNext()
{
    current.reset();
    if (moves->is_full())
        moves->send();
    current = next_item();
    if (!current && moves_may_run)
        moves->send();
    else if (!current)
        finish_moves();
    return current.get();
}

// A cut ends the walk; what it would have met, the next one meets.
std::unique_ptr<outlook::MailItem> walk::next_item()
{
    try {
        while (walking) {
            const auto mail = bodies.next();
            tell_unreadable(bodies.take_refused());
            const listed_mail *known = mail ? box->list.find(mail->uid) : nullptr;
            if (known)
                return std::make_unique<item>(*known, mail->bytes, moves);
            walking = mail.has_value();
        }
    } catch (const run_time_error &failure) {
        walking = false;
        bodies.stop();
        box->hang_up();
        cut = failure;
        unreadable.push_back(failure);
    }
    return nullptr;
}

// A mail that cannot be read is told once while the process lives: a walk comes every few seconds.
void walk::tell_unreadable(const std::vector<quint32> &uids)
{
    for (const quint32 uid : uids) {
        listed_mail *mail = box->list.find(uid);
        if (!mail || mail->told || told >= most_told)
            continue;
        mail->told = true;
        ++told;
        unreadable.push_back(
            {75, QStringLiteral("A mail cannot be read: the server does not give it (number %1).").arg(uid)});
    }
}

bool walk::raise_next_failure()
{
    auto failure = unreadable.take_next();
    if (!failure)
        failure = moves->take_next_failure();
    if (failure)
        throw *failure;
    return false;
}

void walk::finish_moves()
{
    moves->finish(cut);
}

}
