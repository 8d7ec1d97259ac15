// A small site for screen tests: a fresh store and a Maildir in a temporary folder, the real services over them, and
// scripted message boxes. Begins and ends with no screen alive.
#pragma once
#include "platform/real/mail/real_mail_client.h"
#include "platform/real/mail_session/real_mail_session.h"
#include "support/scripted_messages.h"
#include "support/test_store.h"

class screens_site {
public:
    screens_site();
    ~screens_site();
    screens_site(const screens_site &) = delete;
    screens_site &operator=(const screens_site &) = delete;

    // Into the Inbox; each call one minute later than the one before.
    void deliver_mail(const QString &to, const QString &subject = "Hello", const QString &body = "Text");
    qint64 rows_of(const QString &table);
    QString last_logged() const; // "form|routine" at the end of errorlog.txt, "" without one
    void spoil_store();          // closes it and writes over its file: whoever opens it again fails
    QString maildir() const { return store.folder() + "/mail"; }
    QString file(const QString &name) const { return store.folder() + "/" + name; }

    test_store store;
    scripted_messages boxes;
    QStringList status_lines;

private:
    real_mail_client mail;
    real_mail_session mail_session;
    qint64 next_delivery = 1786000000; // 6 August 2026
};
