// Moves that were asked for and are done later, in ranges, after a commit of what the store was given.
#pragma once
#include "platform/real/failure_queue.h"
#include "platform/real/imap/mailbox.h"

namespace imap {

class move_queue : public std::enable_shared_from_this<move_queue> {
public:
    static constexpr size_t enough = 500;
    static constexpr size_t most = 4 * enough; // in one command

    explicit move_queue(std::shared_ptr<mailbox> of) : box(std::move(of)) {}

    void ask(quint32 uid, const QByteArray &target);
    // A server that is still at a MOVE gets the next ones in one command: each costs it a look through both folders.
    bool is_full() const { return waiting.size() >= (under_way.empty() ? enough : most); }

    // Commits, then sends the moves; their outcome is heard while something else is waited for. Throws only when the
    // commit fails. Then, and when the store had to give up rows since the first of these moves was asked for, nothing
    // is moved, now or later: the mails stay, and the next fetch meets them again.
    void send();
    // The same, and waits for the outcome of all moves. A connection that was cut on the way is opened again to see
    // what was moved; what the server was asked for and has not done stays for the next fetch.
    // told: the failure that ended the walk, if one did; it is not told a second time.
    void finish(const std::optional<run_time_error> &told = {});

    std::optional<run_time_error> take_next_failure() { return failures.take_next(); }

private:
    struct batch {
        std::vector<quint32> uids;
        QByteArray target;
        quint32 validity = 0; // of the UIDs
        int attempts = 0;     // that the server refused for a reason which passes
        bool was_sent = false;
        std::vector<uid_range> went; // as the server's COPYUID says
        bool told_what_went = false;
    };
    using some = std::shared_ptr<batch>;

    bool commit();
    void make_batches();
    void start_waiting();
    void start(const some &moves);
    void move(const some &moves);
    void copy(const some &moves);
    void mark_and_expunge(const some &moves);
    void expunge_only_ours(const some &moves);
    bool note_what_went(const some &moves, const answer &said);
    bool is_tried_again(const some &moves, const answer &said);
    void leave_out_those_gone(const some &moves);
    void end(const some &moves);
    void refuse(const some &moves, const run_time_error &why);
    void ask(const QByteArray &command, std::function<void(move_queue &, const answer &)> done);
    void if_only_these_are_marked(const some &moves, const std::vector<quint32> &uids,
                                  std::function<void(move_queue &)> then);
    void listen();
    void look_again(const run_time_error &cut, bool is_told);
    bool is_some_left(const some &moves) const;

    std::shared_ptr<mailbox> box;
    std::vector<std::pair<quint32, QByteArray>> waiting;
    quint64 times_lost_before = 0; // as the first of those waiting was asked for
    quint32 validity = 0;          // of the UIDs of those waiting
    std::vector<some> under_way;
    failure_queue failures;
};

}
