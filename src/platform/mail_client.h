// The user's mail client, the kind with folders, under the verbs of its automation interface. Behind it: a local
// Maildir or an IMAP mailbox (platform/real). The kind that only reads and leaves: platform/mail_session.h.
//
// A move is asked for at once and done later, in ranges, after a commit of what the store was given: a mail never
// leaves the Inbox before its row is durable. raise_next_failure tells what could not be moved, or read.
#pragma once
#include "platform/outbox.h"
#include <QDateTime>
#include <QString>
#include <functional>
#include <memory>
#include <vector>

namespace outlook {

class ReplyItem {
public:
    virtual ~ReplyItem() = default;
    QString Subject;
    QString body; // line ends: CR LF or LF
    // Hands the mail to the Outbox and returns when it is durable there. An address that cannot be written to is no
    // failure here: the mail is kept in the Outbox as refused, with the reason.
    virtual void send() = 0;
};

// A mail of one's own. Its properties may be set in any order, and count as they stand when Send is called.
class NewMail {
public:
    virtual ~NewMail() = default;
    QString To; // one address, or several joined by "; "
    QString Subject;
    QString Body;     // line ends: CR LF or LF
    QString HTMLBody; // not empty: goes out beside a plain part, which is Body or else made from it
    outbox::mail_kind Kind = outbox::mail_kind::single;
    QString SendingAccount;                           // the address it goes out as; "": the one that is set
    std::vector<std::pair<QString, QString>> Headers; // further ones, such as {"List-Unsubscribe", "<...>"}
    // As ReplyItem's.
    virtual void Send() = 0;
};

class MailFolder;

// One mail. Reading body may load it; the others never do.
class MailItem {
public:
    virtual ~MailItem() = default;
    virtual QString To() const = 0;             // the To header's addresses joined by "; ", no names
    virtual QString Subject() const = 0;        // decoded, one line, without outer blanks
    virtual QString body() = 0;                 // the text part, LF line ends, without outer blanks
    virtual QString SenderName() const = 0;     // the address that an answer should go to
    virtual QDateTime ReceivedTime() const = 0; // wall clock, to the second; the same for ever
    virtual std::unique_ptr<ReplyItem> Reply() = 0;
    virtual void Move(MailFolder &target) = 0;
};

// Which mails the walk will stop at. test sees To and Subject; key names the test, so that a client may remember its
// answers for as long as the key stays the same and need not test an unchanged mailbox again.
struct wanted_mails {
    QString key;
    std::function<bool(const QString &to, const QString &subject)> test;
};

class Items {
public:
    virtual ~Items() = default;
    virtual qint64 Count() const = 0; // of all mails, wanted or not
    // The first and the next wanted mail, oldest first, of a snapshot taken by Find; nullptr at the end. The item
    // lives until the next call. Only the filter "every item, read or unread" exists.
    virtual MailItem *Find(const QString &filter, const wanted_mails &wanted) = 0;
    virtual MailItem *FindNext() = 0;
    // Throws the next failure: of a mail that could not be read (each is told once, and some at a time), or of a move
    // that was asked for and could not be done. False when there is none (left).
    virtual bool raise_next_failure() = 0;
    // Does all moves asked for so far, after a commit of the store. FindNext does it too, from time to time.
    virtual void finish_moves() = 0;
    // From now on FindNext sends moves on their way at the end, too, but does not wait for what becomes of them:
    // finish_moves does, later, while the server has been at work.
    virtual void let_moves_run() {}
};

class MailFolder {
public:
    virtual ~MailFolder() = default;
    virtual QString Name() const = 0;
    virtual std::vector<std::unique_ptr<MailFolder>> Folders() = 0;   // its sub-folders
    virtual std::unique_ptr<MailFolder> add(const QString &name) = 0; // a new sub-folder
    virtual std::unique_ptr<Items> items() = 0; // "Items"; outlives neither the folder nor the application
};

class NameSpace {
public:
    virtual ~NameSpace() = default;
    virtual std::unique_ptr<MailFolder> GetDefaultFolder() = 0; // the Inbox
};

class Application {
public:
    virtual ~Application() = default;
    virtual std::unique_ptr<NameSpace> GetNamespace(const QString &type) = 0; // "MAPI"
    virtual std::unique_ptr<NewMail> CreateItem(int type) = 0;                // 0, a mail; others fail with 5
};

// How the program reaches a client: a running one, or nullptr; a new one, or nullptr when it cannot be had.
class mail_client_service {
public:
    virtual ~mail_client_service() = default;
    virtual std::unique_ptr<Application> GetObject() = 0;
    virtual std::unique_ptr<Application> CreateObject() = 0;
};

}
