// The mails of a POP3 mailbox. Opening it lists them and learns the headers of those that are new; texts are fetched
// when they are asked for, and remembered (pop3_memory.h). Nothing is ever deleted.
#pragma once
#include "platform/mail_settings.h"
#include "platform/real/mail_session/mailbox.h"
#include "platform/real/mail_session/pop3_dialogue.h"
#include "platform/real/mail_session/pop3_listing.h"
#include "platform/real/mail_session/pop3_memory.h"

namespace pop3 {

// What is kept from one fetch to the next, as long as the process lives.
struct memory {
    QByteArray mailbox;   // whose listing it is
    QDateTime last_login; // by the clock of platform/clock.h
    std::vector<listed_mail> mails;
    bool all_have_ids = false;
    QSet<QByteArray> refused; // keys of mails whose text the server would not give: told once, then passed over
};

class mailbox : public reading::mailbox {
public:
    // A tick within a minute of the last login is answered from the listing of then.
    mailbox(const mail::client_settings &settings, const net::patience &patience, memory &remembered);
    int count() const override { return int(mails.size()); }
    reading::mail_facts facts(int index) override;
    QString text(int index) override;
    void say_goodbye() override;

private:
    bool last_listing_will_do() const;
    void connect();
    std::vector<listed_mail> listing();
    void list();
    void learn_headers();
    void learn_headers(const std::vector<listed_mail *> &of);
    void learn_header(listed_mail &mail, const QByteArray &header);
    void note_shared_keys();
    void try_refused();
    void be_connected();
    QString fetched_text(const listed_mail &mail);
    template <typename Read>
    auto reading_whole_mailbox(Read read);

    mail::client_settings settings;
    net::patience patience;
    memory &remembered;
    QByteArray name;
    mail_memory kept;
    std::unique_ptr<dialogue> line;
    std::vector<listed_mail> mails;
    QSet<QByteArray> pass_over;
    std::unique_ptr<run_time_error> broken;
    int texts_since_commit = 0;
};

}
