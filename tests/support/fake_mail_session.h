// A stand-in for the mail client that reads and leaves: the mails of a list, and what was sent. It signs on always,
// knows neither folders nor sorting, resolves no names, and keeps all mails: nothing is delivered or removed.
#pragma once
#include "platform/mail_session.h"

#include <QStringList>
#include <vector>

struct fake_message {
    QString recipient, subject, note, sender;
    QDateTime received;
};

struct fake_mail_session_log {
    bool sign_off_fails = false;
    bool signed_on = false, fetched = false, sorted = false, unread_only = true;
    long session_id = 0;
    std::vector<fake_message> messages;
    QStringList sent; // "to|subject|text"
};

class fake_session : public mapi::MAPISession {
public:
    explicit fake_session(fake_mail_session_log &the_log) : log(the_log) {}
    void SignOn() override { log.signed_on = true; }
    void SignOff() override
    {
        log.signed_on = false;
        if (log.sign_off_fails)
            throw run_time_error{32002, "Unspecified failure"};
    }
    long SessionID() const override { return 4711; }

private:
    fake_mail_session_log &log;
};

class fake_messages : public mapi::MAPIMessages {
public:
    explicit fake_messages(fake_mail_session_log &the_log) : log(the_log) {}
    void Fetch() override
    {
        log.fetched = true;
        log.sorted = FetchSorted;
        log.unread_only = FetchUnreadOnly;
        log.session_id = SessionID;
    }
    int MsgCount() const override { return int(log.messages.size()); }
    QString MsgSubject() const override { return current().subject; }
    QString MsgNoteText() override { return current().note; }
    QString MsgOrigAddress() const override { return current().sender; }
    QDateTime MsgDateReceived() const override { return current().received; }
    QString RecipAddress() const override { return current().recipient; }

    void Compose() override
    {
        composed = {};
        MsgIndex = -1;
    }
    void Reply() override
    {
        const QString to = current().sender;
        Compose();
        composed.recipient = to;
    }
    void set_MsgSubject(const QString &subject) override { composed.subject = subject; }
    void set_MsgNoteText(const QString &text) override { composed.note = text; }
    void set_RecipDisplayName(const QString &) override {}
    void set_RecipAddress(const QString &address) override { composed.recipient = address; }
    void ResolveName() override {}
    void Send() override { log.sent += composed.recipient + u'|' + composed.subject + u'|' + composed.note; }

private:
    const fake_message &current() const { return MsgIndex < 0 ? composed : log.messages.at(size_t(MsgIndex)); }
    fake_mail_session_log &log;
    fake_message composed;
};

class fake_mail_session : public mapi::mail_session_service {
public:
    fake_mail_session_log log;
    std::unique_ptr<mapi::MAPISession> session() override { return std::make_unique<fake_session>(log); }
    std::unique_ptr<mapi::MAPIMessages> messages() override { return std::make_unique<fake_messages>(log); }
};
