// A whole site of its own for a test of the intake: a program folder with a fresh store, a Maildir, the real client
// over it, an empty session, and the boxes. Gone with the object.
#pragma once
#include "platform/real/mail/real_mail_client.h"
#include "support/maildir_files.h"
#include "support/scripted_messages.h"

#include <QDateTime>
#include <QTemporaryDir>
#include <vector>

struct site_field {
    QString name;
    QString position;
    QString texts = {}; // joined by "@@@"
    bool label_left_out = false;
};

class intake_site {
public:
    intake_site();
    ~intake_site();
    intake_site(const intake_site &) = delete;
    intake_site &operator=(const intake_site &) = delete;

    void add_account(const QString &name, const QString &address); // and its table
    // A map of the account with that number (from 1), its table and its field rows.
    void add_map(const QString &name, int account, const QString &subject, const QString &separator,
                 const std::vector<site_field> &fields);
    // Unsubscribing is on since then, with the keyword "unsubscribe" and entry 1037 for ann@example.net.
    void enable_unsubscribing(const QDateTime &since = QDateTime(QDate(2026, 1, 1), QTime(0, 0), Qt::UTC));
    // Straight into an account table, past the mail client; the row's message_id.
    qint64 add_stored_mail(const QString &table, const QString &subject, const QString &body);

    // Into the Inbox, at Berlin's 13:00 on 1 January 2026 and a second later each time; gives the file's name.
    QString put(const simple_mail &mail);
    QStringList inbox() const; // the file names' number, see files_in
    QStringList moved() const; // of Tessaly_Inbox
    void put_back();           // everything in Tessaly_Inbox into the Inbox again
    bool fetch();              // as loading the Mail Auditor does it

    // The first column of a select, and all columns joined by "|"; a missing value is "(null)".
    QStringList column(const QString &sql) const;
    QStringList rows(const QString &sql) const;
    void run(const QString &sql) const;

    QString maildir() const { return folder.filePath("mailbox"); }
    QString log_text() const;        // "" without a log
    QStringList log_entries() const; // "number|description|form|routine" of each

    QTemporaryDir folder;
    scripted_messages boxes;
    QStringList status_lines;
    real_mail_client client;
    qint64 next_delivery = 1767268800;
};
