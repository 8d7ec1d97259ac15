// A program folder that is fetched into by the driver and looked at from outside: unsubscribing is on, there is the
// account orders@example.org and a map of it. The mails of a fault test, and what must have become of them.
#pragma once
#include "support/driver.h"
#include "support/maildir_files.h"
#include <QList>
#include <QTemporaryDir>

struct timed_run {
    driver_run run;
    qint64 ms = 0;
};

// How the program reaches its mailbox.
struct fault_login {
    QString kind;
    quint16 port = 0;
    QString user = QStringLiteral("ann"), security = QStringLiteral("none"), authority = {};
    static QString password() { return QStringLiteral("apple tree"); }
};

struct fault_mail {
    simple_mail mail;
    qint64 received; // seconds since 1970
};

class fault_program {
public:
    fault_program();

    static constexpr int timeout_seconds = 1;
    // Runs in several threads at once, too.
    timed_run fetch_as(const fault_login &login, const QStringList &variables = {},
                       driver_rights rights = driver_rights::usual) const;
    // With these lines of the settings' group of the mail client.
    timed_run fetch_with(const QString &mail_client, const QStringList &variables = {},
                         driver_rights rights = driver_rights::usual) const;
    // The variables that load the shim: which calls count, and what happens ("KILL=7").
    QStringList shim(const QString &calls, const QString &setting) const;
    int calls_counted() const; // by the shim so far

    QString path(const QString &name) const { return folder.filePath(name); }
    QStringList stored_bodies() const; // LF line ends, in their order
    QStringList blocked() const;
    QStringList in_map() const;
    QStringList answered() const; // the addresses that answers in the Outbox go to
    QString store_damage() const; // "" when there is none
    QByteArray log() const;

    // "" when as it ought to be with so many orders, else what is wrong.
    QString what_is_wrong_in_store(int orders) const;
    QString what_is_wrong_with_answers() const; // one for each address that was blocked
    QString what_a_kill_did_to_answers() const; // the same, but one may be missing

private:
    QTemporaryDir folder;
};

// Form mails and a duplicate of the last one, letters that are none of ours, unsubscribes.
QList<fault_mail> fault_mails(int orders);
fault_mail order_mail(int number, qint64 received);
QString order_body(int number);
