// The mails of one Maildir folder, walked over a snapshot, oldest first.
#pragma once
#include "platform/mail_client.h"
#include "platform/real/mail/maildir_listing.h"
#include "platform/real/mail/maildir_moves.h"

namespace maildir {

class walk : public outlook::Items {
public:
    explicit walk(std::shared_ptr<folder_memory> folder);

    qint64 Count() const override; // the first Find walks the very mails that were counted
    outlook::MailItem *Find(const QString &filter, const outlook::wanted_mails &wanted_ones) override;
    outlook::MailItem *FindNext() override;
    bool raise_next_failure() override;
    void finish_moves() override;

private:
    std::unique_ptr<outlook::MailItem> item_at(listed_mail &mail);
    void answer_for(listed_mail &mail) const;
    void note_unreadable(listed_mail &mail, int failure);

    std::shared_ptr<folder_memory> memory;
    std::shared_ptr<move_queue> moves; // a reply under way may outlive the walk
    mutable std::shared_ptr<listing> counted;
    std::shared_ptr<listing> snapshot;
    size_t next = 0;
    outlook::wanted_mails wanted;
    std::unique_ptr<outlook::MailItem> current;
    failure_queue unreadable; // not raised yet
    int told = 0;             // of this walk
};

}
