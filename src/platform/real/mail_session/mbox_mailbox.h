// The mails of an mbox file, which is never written to.
#pragma once
#include "platform/real/mail_session/mailbox.h"
#include "platform/real/mail_session/mbox_index.h"
#include <memory>

namespace mbox {

// What is kept from one fetch to the next.
struct memory {
    QString path;
    std::shared_ptr<const index> last;
    int walks = 0; // how often a file was walked
};

class mailbox : public reading::mailbox {
public:
    mailbox(const QString &path, const net::patience &patience, memory &remembered);
    int count() const override { return int(places->mails.size()); }
    reading::mail_facts facts(int index) override;
    QString text(int index) override;

private:
    QByteArray bytes_of(int index, qint64 most); // the mail without its From line, which goes to from_line
    void expect_unchanged(const mail_place &mail) const;
    template <typename Read>
    auto reading_whole_file(Read read);

    file mails;
    std::shared_ptr<const index> places;
    QByteArray from_line;
    std::unique_ptr<run_time_error> broken;
};

}
