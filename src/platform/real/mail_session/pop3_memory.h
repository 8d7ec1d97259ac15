// What is remembered of the mails of POP3 mailboxes, in <app>/pop3memory.sqlite, for its owner's eyes. The file may be
// deleted or damaged at any time: it is then made anew. Where it is locked, cannot be written or cannot be made, it
// stays as it is and a nameless one serves this fetch. Nothing here fails.
#pragma once
#include "platform/mail_settings.h"
#include "platform/real/mail_session/mailbox.h"
#include <QByteArrayList>
#include <QSet>
#include <memory>
#include <optional>

namespace pop3 {

// Behind the usual ports of a server, with encryption and without, lie the same mails. Any other port may lead to
// another server of the same name, such as the end of a tunnel on this computer.
QByteArray name_of_mailbox(const mail::server &server);
// The names with a usual port in them, under which mails were remembered once.
QByteArrayList former_names_of_mailbox(const mail::server &server);

class mail_memory {
public:
    mail_memory(const QString &path, const QByteArray &mailbox); // server and user
    ~mail_memory();
    mail_memory(const mail_memory &) = delete;
    mail_memory &operator=(const mail_memory &) = delete;

    // What is remembered under the former name is that of this mailbox from now on, where it has nothing of its own.
    void take_over(const QByteArray &former_name);
    QSet<QByteArray> keys();
    void keep(const QByteArray &key, const reading::mail_facts &facts);
    std::optional<reading::mail_facts> facts(const QByteArray &key);
    void keep_text(const QByteArray &key, const QString &text); // not a very long one, and not without bound
    std::optional<QString> text(const QByteArray &key);
    void forget_all_but(const QSet<QByteArray> &keys);
    void commit(); // what was kept so far outlives a kill

private:
    struct file;
    std::unique_ptr<file> self;
};

}
