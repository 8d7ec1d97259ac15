// A program folder whose mailbox is on an IMAP server, fetched by the driver and looked at from outside. With a Dovecot
// behind it: imap_fault_site, of which many live on one server, each with a user of its own.
#pragma once
#include "support/dovecot.h"
#include "support/driver.h"

struct timed_run {
    driver_run run;
    qint64 ms = 0;
};

class imap_program {
public:
    // unsubscribing is on; with the account orders@example.org and a map of it
    imap_program();

    static constexpr int timeout_seconds = 1;
    // Runs in several threads at once, too.
    timed_run fetch(quint16 port, const QString &user = QStringLiteral("ann"), const QStringList &variables = {},
                    driver_rights rights = driver_rights::usual) const;

    QString path(const QString &name) const { return folder.filePath(name); }
    QStringList stored_bodies() const; // LF line ends, in their order
    QStringList blocked() const;
    QStringList in_map() const;
    QStringList answered() const; // the addresses that answers in the Outbox go to
    QString store_damage() const; // "" when there is none
    QByteArray log() const;

private:
    QTemporaryDir folder;
};

class imap_fault_site : public imap_program {
public:
    // Form mails and a duplicate, letters that are none of ours, unsubscribes.
    imap_fault_site(dovecot_server &on, const QString &user, int orders);

    timed_run fetch(quint16 port, const QStringList &variables = {}) const;
    timed_run fetch_cleanly(driver_rights rights = driver_rights::usual) const;
    void put_order(int number); // one more
    // Also what a client that was cut off had asked for is done then, and nothing is missing; "" or what did not
    // happen.
    QString wait_for_sessions() const;

    QStringList in_inbox() const { return files_in(server.maildir(user)); }
    QStringList moved() const { return files_in(server.maildir(user, QStringLiteral("Tessaly_Inbox"))); }
    // "" when as it ought to be, else what is wrong.
    QString what_is_missing() const;            // each mail is in a folder once; whatever left the Inbox has its row
    QString what_is_wrong_after_fetch() const;  // and all of ours left it, are stored once, and stand in the map
    QString what_is_wrong_with_answers() const; // one for each address that was blocked
    const QString user;

private:
    void fill();
    void put(const simple_mail &mail);
    QStringList bodies_in(const QString &folder) const;
    QStringList expected_bodies() const;

    dovecot_server &server;
    int orders;
    int all_mails = 0;
    qint64 next_delivery = 1767268800;
};

// What an order says.
QString order_body(int number);
// So many users with the password of all.
QList<dovecot_user> fault_users(int count);
QString fault_user(int number); // from 0
