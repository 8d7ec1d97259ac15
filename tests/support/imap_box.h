// The IMAP mail client over a Dovecot of its own, as user ann, with the Inbox open. Gone with the object.
#pragma once
#include "platform/real/imap/imap_folder.h"
#include "support/dovecot.h"
#include "support/walked_inbox.h"
#include <QTemporaryDir>

struct imap_box : walked_inbox {
    explicit imap_box(const dovecot_options &options = {}) : server(options), port(server.imap_port) { start_anew(); }
    ~imap_box() override { close(); }

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
        close();
        account = std::make_shared<imap::account_memory>(
            "ann@test", [this] { return place(); }, cache_path());
        application = std::make_unique<imap::application>(account);
    }
    QString cache_path() const { return folder.filePath(QStringLiteral("mailcache.sqlite")); }
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
};
