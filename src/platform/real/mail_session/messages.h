// The messages of one session, read one at a time, and the mail being composed.
#pragma once
#include "platform/mail_session.h"
#include "platform/outbox.h"
#include "platform/real/mail_session/session_state.h"

class messages_of_session : public mapi::MAPIMessages {
public:
    explicit messages_of_session(std::shared_ptr<mail_session_state> shared) : state(std::move(shared)) {}

    void Fetch() override;
    int MsgCount() const override { return box ? box->count() : 0; }
    QString MsgSubject() const override;
    QString MsgNoteText() override;
    QString MsgOrigAddress() const override;
    QDateTime MsgDateReceived() const override;
    QString RecipAddress() const override;

    void Compose() override;
    void Reply() override;
    void set_MsgSubject(const QString &subject) override;
    void set_MsgNoteText(const QString &text) override;
    void set_RecipDisplayName(const QString &) override {} // mails go out to bare addresses
    void set_RecipAddress(const QString &address) override;
    void ResolveName() override;
    void Send() override;

private:
    bool is_composing() const { return MsgIndex == -1; }
    const reading::mail_facts &current() const;
    void expect_composing() const;
    void begin_with(const outbox::outgoing_mail &mail);

    std::shared_ptr<mail_session_state> state;
    std::shared_ptr<reading::mailbox> box;
    outbox::outgoing_mail composed;
    mutable int read_index = -1; // the message that was read last; a walk asks several things of each
    mutable reading::mail_facts read_facts;
};
