// The mails of one IMAP folder, walked over a snapshot, oldest first.
#pragma once
#include "platform/real/imap/body_ranges.h"
#include "platform/real/imap/move_queue.h"

namespace imap {

class walk : public outlook::Items {
public:
    explicit walk(std::shared_ptr<mailbox> folder);

    qint64 Count() const override; // the first Find walks the very mails that were counted
    outlook::MailItem *Find(const QString &filter, const outlook::wanted_mails &wanted) override;
    outlook::MailItem *FindNext() override;
    bool raise_next_failure() override;
    void finish_moves() override;
    void let_moves_run() override { moves_may_run = true; }

private:
    void tell_unreadable(const std::vector<quint32> &uids);
    std::unique_ptr<outlook::MailItem> next_item();

    std::shared_ptr<mailbox> box;
    std::shared_ptr<move_queue> moves; // a reply under way may outlive the walk
    body_ranges bodies;
    mutable bool counted = false;
    bool walking = false;
    bool moves_may_run = false;        // behind the end of the walk
    std::optional<run_time_error> cut; // what ended the walk before its end
    std::unique_ptr<outlook::MailItem> current;
    failure_queue unreadable; // not raised yet
    int told = 0;             // of this walk
};

}
