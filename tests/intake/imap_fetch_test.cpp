// The whole fetch over IMAP: the same mails give the same rows as over the Maildir, the hostile ones too.
#include "platform/passwords.h"
#include "platform/settings.h"
#include "support/dovecot.h"
#include "support/hostile_mails.h"
#include "support/intake_site.h"
#include <QTest>

namespace {

const QString account = QStringLiteral("orders@example.org");
constexpr const char *all_rows = "select tsl_subject,tsl_recdate,tsl_Email,tsl_body from orders order by message_id";

struct imap_site : intake_site {
    imap_site()
    {
        add_account("orders", account);
        SaveSetting("mail_client", "kind", "imap");
        SaveSetting("mail_client", "host", server.host());
        SaveSetting("mail_client", "port", QString::number(server.imap_port));
        SaveSetting("mail_client", "security", "none");
        SaveSetting("mail_client", "user", "ann");
        SaveSetting("mail_client", "password", "apple tree");
        passwords::forget_remembered();
    }
    ~imap_site()
    {
        for (const char *key : {"kind", "host", "port", "security", "user", "password"})
            DeleteSetting("mail_client", QString::fromLatin1(key));
        passwords::forget_remembered();
    }
    dovecot_server server;
};

// Mails that differ by the server's doing stay out: it hands out no zero bytes, looks for To and Subject beyond the
// first megabyte of a header, where the Maildir stops, and makes every line end two bytes, of which fewer fit into a
// body.
bool is_the_same_over_imap(const hostile_mail &mail)
{
    const qsizetype header = qMax(mail.bytes.indexOf("\n\n"), mail.bytes.indexOf("\r\n\r\n"));
    return !mail.bytes.contains('\0') && header < 1024 * 1024 && mail.bytes.count('\n') < 4'000'000;
}

std::vector<QByteArray> mails()
{
    std::vector<QByteArray> found;
    for (const hostile_mail &hostile : hostile_mails(account.toUtf8()))
        if (is_the_same_over_imap(hostile))
            found.push_back(hostile.bytes);
    for (int number = 0; number < 20; ++number)
        found.push_back(mail_bytes({account, "ann@example.net", "Order " + QString::number(number), "Name: Ann\n"}));
    return found;
}

}

class imap_fetch_test : public QObject {
    Q_OBJECT
private slots:
    void the_same_rows_as_over_the_maildir();
    void fetching_twice_stores_once();
};

void imap_fetch_test::the_same_rows_as_over_the_maildir()
{
    QStringList over_maildir, over_imap;
    {
        intake_site site;
        site.add_account("orders", account);
        for (const QByteArray &bytes : mails())
            deliver(site.maildir(), bytes, site.next_delivery++);
        QVERIFY(site.fetch());
        over_maildir = site.rows(QString::fromLatin1(all_rows));
    }
    {
        imap_site site;
        for (const QByteArray &bytes : mails())
            site.server.deliver("ann", bytes, site.next_delivery++);
        QVERIFY(site.fetch());
        over_imap = site.rows(QString::fromLatin1(all_rows));
        QCOMPARE(site.log_text(), QString());
    }
    over_maildir.sort(); // mails that come together get their numbers in an order of the server's
    over_imap.sort();
    QVERIFY(over_maildir.size() > 60);
    QCOMPARE(over_imap, over_maildir);
}

void imap_fetch_test::fetching_twice_stores_once()
{
    imap_site site;
    for (int number = 0; number < 5; ++number)
        site.server.deliver("ann", simple_mail{account, "ann@example.net", "Order", "Name: Ann\n"},
                            1767268800 + number);
    QVERIFY(site.fetch());
    QCOMPARE(site.column("select count(*) from orders"), QStringList{"5"});
    QCOMPARE(files_in(site.server.maildir("ann", "Tessaly_Inbox")).size(), 5);
    for (const QString &file : files_in(site.server.maildir("ann", "Tessaly_Inbox")))
        QVERIFY(QFile::rename(site.server.maildir("ann", "Tessaly_Inbox") + u'/' + file,
                              site.server.maildir("ann") + "/cur/" + file.section(u'/', 1)));
    QVERIFY(site.fetch());
    QCOMPARE(site.column("select count(*) from orders"), QStringList{"5"});
    QCOMPARE(files_in(site.server.maildir("ann", "Tessaly_Inbox")).size(), 5);
    QCOMPARE(site.log_text(), QString());
}

QTEST_GUILESS_MAIN(imap_fetch_test)
#include "imap_fetch_test.moc"
