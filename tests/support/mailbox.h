// The mail client over a fresh Maildir of its own, with the Inbox open. Gone with the object.
#pragma once
#include "platform/app_folder.h"
#include "platform/real/mail/real_mail_client.h"
#include "platform/settings.h"
#include "support/maildir_files.h"
#include <QDir>
#include <QTemporaryDir>

inline constexpr qint64 noon = 1767268800; // 1 January 2026, 12:00 UTC
inline const char *const every_item = "[unread]=true or [unread]=false";

inline outlook::wanted_mails all_mails()
{
    return {QStringLiteral("all"), [](const QString &, const QString &) { return true; }};
}

struct mailbox {
    mailbox()
    {
        set_app_folder(folder.path());
        QDir().mkpath(path());
        SaveSetting(QStringLiteral("mail_client"), QStringLiteral("maildir"), path());
        open();
    }
    ~mailbox() { set_app_folder({}); }

    void open()
    {
        items.reset();
        inbox.reset();
        application = client.CreateObject();
        inbox = application->GetNamespace(QStringLiteral("MAPI"))->GetDefaultFolder();
        items = inbox->items();
    }
    QString path() const { return folder.filePath(QStringLiteral("mailbox")); }
    outlook::MailItem *find(const outlook::wanted_mails &wanted = all_mails())
    {
        return items->Find(QString::fromLatin1(every_item), wanted);
    }
    QStringList subjects(const outlook::wanted_mails &wanted = all_mails())
    {
        QStringList found;
        for (outlook::MailItem *item = find(wanted); item; item = items->FindNext())
            found.append(item->Subject());
        return found;
    }
    QStringList failures()
    {
        QStringList told;
        for (bool more = true; more;) {
            try {
                more = items->raise_next_failure();
            } catch (const run_time_error &failure) {
                told += QString::number(failure.number) + u' ' + failure.description;
            }
        }
        return told;
    }
    void put(const QString &subject, qint64 delivered)
    {
        deliver(path(), simple_mail{"orders@example.org", "ann@example.net", subject, "Hello\n"}, delivered);
    }

    QTemporaryDir folder;
    real_mail_client client;
    std::unique_ptr<outlook::Application> application;
    std::unique_ptr<outlook::MailFolder> inbox;
    std::unique_ptr<outlook::Items> items;
};
