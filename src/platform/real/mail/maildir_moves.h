// Moves that were asked for and are done later, in one go, after a commit of what the store was given.
#pragma once
#include "platform/real/failure_queue.h"
#include <QByteArray>
#include <vector>

namespace maildir {

class move_queue {
public:
    static constexpr size_t enough = 100;

    void ask(const QByteArray &from_folder, const QByteArray &name, bool is_new, const QByteArray &to_folder);
    bool is_full() const { return waiting.size() >= enough; }

    // Commits, then renames. Throws only when the commit fails. Then, and when the store had to give up rows since the
    // first of these moves was asked for, nothing is moved, now or later: the mails stay, and the next fetch meets
    // them again.
    void finish();
    // What finish did is on disk, too. A rename that a power cut undoes only leaves a mail in the Inbox once more.
    void make_durable();

    std::optional<run_time_error> take_next_failure() { return failures.take_next(); }

private:
    struct wanted_move {
        QByteArray from_folder, name, to_folder;
        bool is_new = false;
    };
    void move_one(const wanted_move &move);

    std::vector<wanted_move> waiting;
    quint64 times_lost_before = 0; // as the first of those waiting was asked for
    std::vector<QByteArray> touched_folders;
    failure_queue failures;
};

}
