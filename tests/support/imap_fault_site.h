// A program folder whose mailbox is on an IMAP server, fetched by the driver and looked at from outside. With a Dovecot
// behind it: imap_fault_site, of which many live on one server, each with a user of its own.
#pragma once
#include "support/dovecot.h"
#include "support/fault_program.h"

class imap_program : public fault_program {
public:
    timed_run fetch(quint16 port, const QString &user = QStringLiteral("ann"), const QStringList &variables = {},
                    driver_rights rights = driver_rights::usual) const;
};

class imap_fault_site : public imap_program {
public:
    // Form mails and a duplicate, letters that are none of ours, unsubscribes.
    imap_fault_site(dovecot_server &on, const QString &user, int orders);

    // From now on by "tls" or "starttls", trusting that authority.
    void secure(const QString &how, const QString &authority);
    quint16 server_port() const;
    timed_run fetch(quint16 port, const QStringList &variables = {}, driver_rights rights = driver_rights::usual) const;
    timed_run fetch_cleanly(driver_rights rights = driver_rights::usual) const;
    void put_order(int number); // one more
    // Also what a client that was cut off had asked for is done then, and nothing is missing; "" or what did not
    // happen.
    QString wait_for_sessions() const;

    QStringList in_inbox() const { return files_in(server.maildir(user)); }
    QStringList moved() const { return files_in(server.maildir(user, QStringLiteral("Tessaly_Inbox"))); }
    // "" when as it ought to be, else what is wrong.
    QString what_is_missing() const;           // each mail is in a folder once; whatever left the Inbox has its row
    QString what_is_wrong_after_fetch() const; // and all of ours left it, are stored once, and stand in the map
    const QString user;

private:
    void put(const fault_mail &each);
    QStringList bodies_in(const QString &folder) const;

    dovecot_server &server;
    int orders;
    int all_mails = 0;
    qint64 last_received = 0;
    QString security = QStringLiteral("none"), authority;
};

// So many users with the password of all.
QList<dovecot_user> fault_users(int count);
QString fault_user(int number); // from 0
