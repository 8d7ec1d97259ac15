#include "platform/real/imap/move_queue.h"
#include "platform/outside_effects.h"
#include "platform/real/imap/modified_utf7.h"
#include <algorithm>

namespace imap {

namespace {

constexpr size_t most_ranges = 2 * move_queue::most; // a server that tells of moves without end is not heard

constexpr int most_attempts = 3;

run_time_error mail_is_gone()
{
    return {53, QStringLiteral("The mail cannot be moved: it is not in the folder any more.")};
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
                   moves->uids.size() < most;
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
        if (is_gone)
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
        if (knows && !holds(moves->went, uid) && !box->was_copied(uid))
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

// What is not there any more was moved. What is there still may be moved by the server yet, which goes on with a
// command behind a cut: sent once more, it would lie in the target twice. So it stays for the next fetch, as it does
// where nobody answers or nobody waits.
void move_queue::look_again(const run_time_error &cut, bool is_told)
{
    const auto unclear = std::exchange(under_way, {});
    std::optional<run_time_error> failed;
    try {
        if (net::is(cut, net::trouble::cancelled) || net::is(cut, net::trouble::timed_out))
            throw run_time_error(cut);
        box->hang_up();
        box->refresh();
        for (const some &moves : unclear) {
            if (!moves->was_sent)
                under_way.push_back(moves);
            else if (is_some_left(moves))
                failed = cut;
        }
        start_waiting();
        listen();
    } catch (const run_time_error &again) { // told as one failure, whatever waited
        failed = again;
    }
    under_way.clear();
    if (failed && !is_told)
        failures.push_back(*failed);
}

bool move_queue::is_some_left(const some &moves) const
{
    return moves->validity == box->uid_validity() &&
           std::any_of(moves->uids.begin(), moves->uids.end(), [this](quint32 uid) { return box->list.find(uid); });
}

}
