#include "platform/real/imap/move_queue.h"
#include "platform/outside_effects.h"
#include "platform/real/imap/modified_utf7.h"
#include <algorithm>

namespace imap {

namespace {

constexpr size_t most_ranges = 4 * move_queue::enough; // a server that tells of moves without end is not heard

constexpr int most_attempts = 3;

bool contains(const std::vector<quint32> &uids, quint32 uid)
{
    return std::find(uids.begin(), uids.end(), uid) != uids.end();
}

run_time_error mail_is_gone()
{
    return {53, QStringLiteral("The mail cannot be moved: it is not in the folder any more.")};
}

run_time_error others_are_marked()
{
    return {75,
            QStringLiteral("The mails cannot be moved: this server can only remove everything that is marked as "
                           "deleted, and other mails are marked, too. Empty the deleted mails in your mail program.")};
}

}

void move_queue::ask(quint32 uid, const QByteArray &target)
{
    if (waiting.empty()) {
        times_lost_before = times_writes_were_lost();
        validity = box->uid_validity();
    }
    waiting.emplace_back(uid, target);
}

bool move_queue::commit()
{
    before_outside_effect();
    return times_writes_were_lost() == times_lost_before;
}

void move_queue::make_batches()
{
    std::stable_sort(waiting.begin(), waiting.end(), [](const auto &a, const auto &b) { return a.first < b.first; });
    for (const auto &[uid, target] : std::exchange(waiting, {})) {
        const auto same = std::find_if(under_way.begin(), under_way.end(), [this, &target = target](const some &moves) {
            return !moves->was_sent && moves->target == target && moves->validity == validity &&
                   moves->uids.size() < enough;
        });
        if (same != under_way.end()) {
            (*same)->uids.push_back(uid);
            continue;
        }
        under_way.push_back(std::make_shared<batch>());
        under_way.back()->uids = {uid};
        under_way.back()->target = target;
        under_way.back()->validity = validity;
    }
}

void move_queue::send()
{
    if (waiting.empty())
        return;
    const auto moves = std::exchange(waiting, {});
    if (!commit())
        return;
    waiting = moves;
    make_batches();
    if (!box->is_open())
        return; // finish sees to it
    start_waiting();
    try {
        box->server().flush();
    } catch (const run_time_error &) { // whoever listens next meets it again: the connection is no good any more
    }
}

// Where a whole folder is expunged, one range must be through before the next is marked.
void move_queue::start_waiting()
{
    const bool one_by_one = !box->server().can("MOVE") && !box->server().can("UIDPLUS");
    for (const some &each : std::vector<some>(under_way)) {
        if (each->was_sent && one_by_one)
            return;
        if (!each->was_sent)
            start(each);
    }
}

void move_queue::leave_out_those_gone(const some &moves)
{
    const bool same_folder = moves->validity == box->uid_validity();
    std::erase_if(moves->uids, [&](quint32 uid) {
        const bool is_gone = !same_folder || !box->list.find(uid);
        if (is_gone && !moves->was_cut)
            failures.push_back(mail_is_gone());
        return is_gone;
    });
}

void move_queue::start(const some &moves)
{
    leave_out_those_gone(moves);
    moves->was_sent = true;
    moves->told_what_went = false;
    moves->went.clear();
    if (moves->uids.empty())
        end(moves);
    else if (box->server().can("MOVE"))
        move(moves);
    else if (box->server().can("UIDPLUS"))
        copy(moves);
    else
        if_only_these_are_marked(moves, moves->uids, [moves](move_queue &self) { self.copy(moves); });
}

// The queue may be gone when the answer comes.
void move_queue::ask(const QByteArray &command, std::function<void(move_queue &, const answer &)> done)
{
    const std::weak_ptr<move_queue> self = weak_from_this();
    const auto hear = [self](const response &, const answer &said) {
        const auto queue = self.lock();
        if (!queue || !is(said.code, "COPYUID"))
            return false;
        bool is_new = false;
        for (const some &each : std::vector<some>(queue->under_way)) // it may come before the end of an earlier move
            is_new = queue->note_what_went(each, said) || is_new;
        return is_new;
    };
    box->server().ask(command, hear, [self, done = std::move(done)](const answer &said) {
        if (const auto queue = self.lock())
            done(*queue, said);
    });
}

// COPYUID 1700000000 3:5,7 12:15: the second is what went.
bool move_queue::note_what_went(const some &moves, const answer &said)
{
    if (!is(said.code, "COPYUID") || moves->went.size() > most_ranges)
        return false;
    words numbers(said.details);
    numbers.atom();
    for (const uid_range &range : ranges_in(numbers.atom()))
        moves->went.push_back(range);
    std::sort(moves->went.begin(), moves->went.end(), [](const auto &a, const auto &b) { return a.first < b.first; });
    moves->told_what_went = true;
    return true;
}

void move_queue::move(const some &moves)
{
    ask("UID MOVE " + uid_set(moves->uids) + ' ' + quoted(moves->target),
        [moves](move_queue &self, const answer &said) {
            self.note_what_went(moves, said);
            if (said.said == status::ok)
                self.end(moves);
            else if (!self.is_tried_again(moves, said))
                self.refuse(moves, self.box->server().refusal(said));
        });
}

void move_queue::copy(const some &moves)
{
    std::vector<quint32> to_copy;
    for (const quint32 uid : moves->uids)
        if (!contains(box->copied, uid))
            to_copy.push_back(uid);
    if (to_copy.empty())
        return mark_and_expunge(moves);
    ask("UID COPY " + uid_set(to_copy) + ' ' + quoted(moves->target),
        [moves, to_copy](move_queue &self, const answer &said) {
            self.note_what_went(moves, said);
            if (said.said != status::ok) {
                if (!self.is_tried_again(moves, said))
                    self.refuse(moves, self.box->server().refusal(said));
                return;
            }
            for (const quint32 uid : to_copy)
                if (!moves->told_what_went || holds(moves->went, uid))
                    self.box->copied.push_back(uid);
            self.mark_and_expunge(moves);
        });
}

// Only what lies in the target for certain goes from here.
void move_queue::mark_and_expunge(const some &moves)
{
    std::vector<quint32> uids;
    for (const quint32 uid : moves->uids)
        if (contains(box->copied, uid))
            uids.push_back(uid);
    if (uids.empty())
        return end(moves);
    const bool can_expunge_ours = box->server().can("UIDPLUS");
    ask("UID STORE " + uid_set(uids) + " +FLAGS.SILENT (\\Deleted)", [moves, can_expunge_ours](move_queue &self,
                                                                                               const answer &said) {
        if (said.said != status::ok)
            self.refuse(moves, self.box->server().refusal(said));
        else if (!can_expunge_ours)
            self.if_only_these_are_marked(moves, {}, [moves](move_queue &queue) { queue.expunge_only_ours(moves); });
    });
    if (can_expunge_ours)
        ask("UID EXPUNGE " + uid_set(uids), [moves](move_queue &self, const answer &said) {
            if (said.said == status::ok)
                self.end(moves);
            else
                self.refuse(moves, self.box->server().refusal(said));
        });
}

void move_queue::expunge_only_ours(const some &moves)
{
    ask("EXPUNGE", [moves](move_queue &self, const answer &said) {
        if (said.said == status::ok)
            self.end(moves);
        else
            self.refuse(moves, self.box->server().refusal(said));
    });
}

// A mail that somebody marked by hand is not ours to remove: the marked ones must be among these, or be copied already.
void move_queue::if_only_these_are_marked(const some &moves, const std::vector<quint32> &uids,
                                          std::function<void(move_queue &)> then)
{
    const auto marked = std::make_shared<std::vector<uid_range>>();
    const std::weak_ptr<move_queue> self = weak_from_this();
    const auto hear = [marked](const response &from, const answer &said) {
        if (said.kind != answer_kind::named || !is(said.name, "SEARCH"))
            return false;
        *marked = searched_uids(from, said);
        return true;
    };
    box->server().ask("UID SEARCH DELETED", hear, [self, moves, uids, marked, then](const answer &said) {
        const auto queue = self.lock();
        if (!queue)
            return;
        if (said.said != status::ok)
            return queue->refuse(moves, queue->box->server().refusal(said));
        const bool only_ours = std::all_of(marked->begin(), marked->end(), [&](const uid_range &range) {
            return range.first == range.last &&
                   (contains(uids, range.first) || contains(queue->box->copied, range.first));
        });
        if (only_ours)
            then(*queue);
        else
            queue->refuse(moves, others_are_marked());
    });
}

// A target that is gone is made again. A mail that is gone may keep the others back: a NOOP tells which one it is.
bool move_queue::is_tried_again(const some &moves, const answer &said)
{
    const bool no_target = is(said.code, "TRYCREATE"), some_are_gone = is(said.code, "EXPUNGEISSUED");
    if ((!no_target && !some_are_gone) || ++moves->attempts > most_attempts)
        return false;
    if (no_target)
        box->names.create(box->server(), moves->target);
    ask("NOOP", [moves](move_queue &self, const answer &) { self.start(moves); });
    return true;
}

// Those that the server's COPYUID leaves out were gone before.
void move_queue::end(const some &moves)
{
    const bool knows = moves->told_what_went || box->server().can("UIDPLUS");
    for (const quint32 uid : moves->uids) {
        if (knows && !moves->was_cut && !holds(moves->went, uid) && !contains(box->copied, uid))
            failures.push_back(mail_is_gone());
        if (box->list.find(uid))
            box->doubt();
    }
    std::erase_if(box->copied, [&](quint32 uid) { return !box->list.find(uid); });
    std::erase(under_way, moves);
    start_waiting();
}

void move_queue::refuse(const some &moves, const run_time_error &why)
{
    failures.push_back(why);
    std::erase(under_way, moves);
    start_waiting();
}

void move_queue::listen()
{
    while (!under_way.empty() && box->is_open())
        box->server().listen();
    if (!under_way.empty())
        throw net::failure(net::trouble::closed, QStringLiteral("The mail server closed the connection."));
}

void move_queue::finish(const std::optional<run_time_error> &told)
{
    send();
    try {
        listen();
    } catch (const run_time_error &cut) { // it may have been done all the same
        look_again(told.value_or(cut), told.has_value());
    }
    box->save();
}

// What is not there any more was moved. Where nobody answers, or nobody waits, the next fetch sees what is left.
void move_queue::look_again(const run_time_error &cut, bool is_told)
{
    const auto unclear = std::exchange(under_way, {});
    run_time_error failed = cut;
    try {
        if (net::is(cut, net::trouble::cancelled) || net::is(cut, net::trouble::timed_out))
            throw run_time_error(cut);
        box->hang_up();
        box->refresh();
        for (const some &moves : unclear) {
            if (moves->was_sent && moves->validity == box->uid_validity())
                std::erase_if(moves->uids, [this](quint32 uid) { return !box->list.find(uid); });
            moves->was_cut = std::exchange(moves->was_sent, false);
            under_way.push_back(moves);
        }
        start_waiting();
        return listen();
    } catch (const run_time_error &again) { // told as one failure, whatever waited
        failed = again;
    }
    under_way.clear();
    if (!is_told)
        failures.push_back(failed);
}

std::optional<run_time_error> move_queue::take_next_failure()
{
    if (failures.empty())
        return std::nullopt;
    const run_time_error next = failures.front();
    failures.pop_front();
    return next;
}

}
