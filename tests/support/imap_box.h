// The IMAP mail client over a Dovecot of its own, as user ann, with the Inbox open. Gone with the object.
#pragma once
#include "platform/real/imap/imap_folder.h"
#include "support/dovecot.h"
#include "support/mailbox.h"

struct imap_box {
    explicit imap_box(const dovecot_options &options = {}) : server(options), port(server.imap_port) { start_anew(); }

    net::place place() const
    {
        net::place to;
        to.server = {server.host(), port, mail::security::none, QStringLiteral("ann")};
        to.password = password;
        return to;
    }
    // As a new process would, with the cache that is on disk.
    void start_anew()
    {
        items.reset();
        inbox.reset();
        account = std::make_shared<imap::account_memory>(
            "ann@test", [this] { return place(); }, cache_path());
        application = std::make_unique<imap::application>(account);
    }
    void open()
    {
        items.reset();
        inbox = application->GetNamespace(QStringLiteral("MAPI"))->GetDefaultFolder();
        items = inbox->items();
    }
    QString cache_path() const { return folder.filePath(QStringLiteral("mailcache.sqlite")); }
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
    // All wanted mails go into the sub-folder; how many there were.
    int move_all(outlook::MailFolder &target, const outlook::wanted_mails &wanted = all_mails())
    {
        int moved = 0;
        for (outlook::MailItem *item = find(wanted); item; item = items->FindNext()) {
            item->Move(target);
            ++moved;
        }
        return moved;
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
    void put(const QString &subject, qint64 delivered = noon)
    {
        server.deliver(QStringLiteral("ann"), simple_mail{"orders@example.org", "ann@example.net", subject, "Hello\n"},
                       delivered);
    }
    void put_many(int count)
    {
        for (int number = 0; number < count; ++number)
            put(QString::number(number), noon + number);
    }
    QStringList in_inbox() const { return files_in(server.maildir(QStringLiteral("ann"))); }
    QStringList in_folder(const QString &name = QStringLiteral("Tessaly_Inbox")) const
    {
        return files_in(server.maildir(QStringLiteral("ann"), name));
    }

    dovecot_server server;
    quint16 port; // of the server, or of a proxy before it
    QString password = QStringLiteral("apple tree");
    QTemporaryDir folder;
    std::shared_ptr<imap::account_memory> account;
    std::unique_ptr<outlook::Application> application;
    std::unique_ptr<outlook::MailFolder> inbox;
    std::unique_ptr<outlook::Items> items;
};
