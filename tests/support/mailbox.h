// The mail client over a fresh Maildir of its own, with the Inbox open. Gone with the object.
#pragma once
#include "platform/app_folder.h"
#include "platform/real/mail/real_mail_client.h"
#include "platform/settings.h"
#include "support/maildir_files.h"
#include "support/walked_inbox.h"
#include <QDir>
#include <QTemporaryDir>

struct mailbox : walked_inbox {
    mailbox()
    {
        set_app_folder(folder.path());
        QDir().mkpath(path());
        SaveSetting(QStringLiteral("mail_client"), QStringLiteral("maildir"), path());
        open();
    }
    ~mailbox() override
    {
        close();
        set_app_folder({});
    }

    void open() override
    {
        close();
        application = client.CreateObject();
        walked_inbox::open();
    }
    QString path() const { return folder.filePath(QStringLiteral("mailbox")); }
    void put(const QString &subject, qint64 delivered)
    {
        deliver(path(), simple_mail{"orders@example.org", "ann@example.net", subject, "Hello\n"}, delivered);
    }

    QTemporaryDir folder;
    real_mail_client client;
};
