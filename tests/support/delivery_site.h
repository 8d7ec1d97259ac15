// A program folder with an Outbox whose mails go to a server of the test. Gone with the object.
#pragma once
#include "platform/mail_delivery.h"
#include "platform/mail_settings.h"
#include "support/driver.h"
#include <QStringList>
#include <QTemporaryDir>

class delivery_site {
public:
    // The server listens at that port of 127.0.0.1, without TLS and without a login. 0: nothing goes out.
    explicit delivery_site(quint16 port = 0);
    ~delivery_site();
    delivery_site(const delivery_site &) = delete;
    delivery_site &operator=(const delivery_site &) = delete;

    void set(const mail::client_settings &changed);
    mail::client_settings settings;
    QString hand_over(const QString &to, outbox::mail_kind kind = outbox::mail_kind::single);
    void hand_over_many(int count); // to 1@example.net, 2@example.net ... in their order; by copying, so quickly
    QString deliver();              // all, now: what ended it, "" when nothing did
    QString path(const QString &name) const { return folder.filePath(name); }
    QStringList outbox_files() const;
    void begin_a_new_run() const; // forgets what the process knows of the folder

private:
    QTemporaryDir folder;
};

QStringList waiting_addresses();
outbox::kept_mail only_mail(); // ends the test unless there is one
