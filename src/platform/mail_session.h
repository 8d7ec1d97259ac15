// The mail client that reads and leaves: plain text, no folders, under the verbs of its two controls. Behind it: a
// POP3 mailbox or an mbox file. The kind with folders: platform/mail_client.h.
#pragma once
#include "platform/outbox.h"
#include <QDateTime>
#include <QString>
#include <memory>

namespace mapi {

constexpr quint32 unknown_recipient = 32014;

class MAPISession {
public:
    virtual ~MAPISession() = default;
    bool DownLoadMail = true;
    virtual void SignOn() = 0;
    virtual void SignOff() = 0;
    virtual long SessionID() const = 0;
};

class MAPIMessages {
public:
    virtual ~MAPIMessages() = default;
    long SessionID = 0;
    bool FetchSorted = false;
    bool FetchUnreadOnly = true;
    virtual void Fetch() = 0;
    virtual int MsgCount() const = 0;

    // The message at MsgIndex, from 0; -1 is the one being composed.
    int MsgIndex = 0;
    virtual QString MsgSubject() const = 0;
    virtual QString MsgNoteText() = 0;          // the text, LF line ends
    virtual QString MsgOrigAddress() const = 0; // may begin with "smtp:"
    virtual QDateTime MsgDateReceived() const = 0;
    virtual QString RecipAddress() const = 0; // may begin with "smtp:"

    // Of the mail being composed: Compose and Reply set them anew, and they count as they stand when Send is called.
    outbox::mail_kind Kind = outbox::mail_kind::single;
    QString SendingAccount;                           // the address it goes out as; "": the one that is set
    std::vector<std::pair<QString, QString>> Headers; // further ones, such as {"Auto-Submitted", "auto-replied"}

    virtual void Compose() = 0; // MsgIndex becomes -1, an empty mail
    virtual void Reply() = 0;   // the same, addressed to the sender of the message at MsgIndex
    virtual void set_MsgSubject(const QString &subject) = 0;
    virtual void set_MsgNoteText(const QString &text) = 0;
    virtual void set_RecipDisplayName(const QString &name) = 0;
    virtual void set_RecipAddress(const QString &address) = 0;
    // Fails with unknown_recipient when no mail can be addressed so. For a user who waits and can mend it; without it
    // the Outbox keeps such a mail as refused.
    virtual void ResolveName() = 0;
    virtual void Send() = 0; // hands it to the Outbox; durable when it returns
};

class mail_session_service {
public:
    virtual ~mail_session_service() = default;
    virtual std::unique_ptr<MAPISession> session() = 0;
    virtual std::unique_ptr<MAPIMessages> messages() = 0;
};

}
