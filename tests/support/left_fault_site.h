// A program folder whose mailbox is one that mails are read from and left in: POP3 on a Dovecot, or an mbox file. The
// mails and what must become of them: fault_program.h.
#pragma once
#include "support/dovecot.h"
#include "support/fault_program.h"

class left_fault_site : public fault_program {
public:
    left_fault_site(dovecot_server &on, const QString &user, int orders); // POP3
    explicit left_fault_site(int orders);                                 // mbox

    // From now on by "tls" or "starttls", trusting that authority.
    void secure(const QString &how, const QString &authority);
    quint16 server_port() const;
    timed_run fetch(quint16 port, const QStringList &variables = {}) const;
    timed_run fetch_cleanly(const QStringList &variables = {}) const; // also of an mbox

    // "" when each of ours is stored once and the mailbox is what it was, else what is wrong.
    QString what_is_wrong_after_fetch() const;
    QString what_is_doubled() const; // "" also when something is not there yet

private:
    dovecot_server *server = nullptr;
    fault_login login{"pop3"};
    int orders;
    QByteArray mbox_bytes;
};
