// The Inbox of a client with folders, opened and walked. Over a Maildir: mailbox.h. Over IMAP: imap_box.h.
#pragma once
#include "platform/mail_client.h"
#include "platform/run_time_error.h"
#include <QStringList>

inline constexpr qint64 noon = 1767268800; // 1 January 2026, 12:00 UTC
inline const char *const every_item = "[unread]=true or [unread]=false";

inline outlook::wanted_mails all_mails()
{
    return {QStringLiteral("all"), [](const QString &, const QString &) { return true; }};
}

struct walked_inbox {
    virtual ~walked_inbox() = default;

    virtual void open()
    {
        close();
        inbox = application->GetNamespace(QStringLiteral("MAPI"))->GetDefaultFolder();
        items = inbox->items();
    }
    void close()
    {
        items.reset();
        inbox.reset();
    }
    outlook::MailItem *find(const outlook::wanted_mails &wanted = all_mails())
    {
        if (!items)
            open();
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

    std::unique_ptr<outlook::Application> application;
    std::unique_ptr<outlook::MailFolder> inbox;
    std::unique_ptr<outlook::Items> items;
};
