// The road of move_queue on servers without MOVE: copy, mark, expunge.
#include "platform/real/imap/modified_utf7.h"
#include "platform/real/imap/move_queue.h"
#include <algorithm>

namespace imap {

namespace {

run_time_error others_are_marked()
{
    return {75,
            QStringLiteral("The mails cannot be moved: this server can only remove everything that is marked as "
                           "deleted, and other mails are marked, too. Empty the deleted mails in your mail program.")};
}

}

void move_queue::copy(const some &moves)
{
    std::vector<quint32> to_copy;
    for (const quint32 uid : moves->uids)
        if (!box->was_copied(uid))
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
        if (box->was_copied(uid))
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
            return range.first == range.last && (std::find(uids.begin(), uids.end(), range.first) != uids.end() ||
                                                 queue->box->was_copied(range.first));
        });
        if (only_ours)
            then(*queue);
        else
            queue->refuse(moves, others_are_marked());
    });
}

}
