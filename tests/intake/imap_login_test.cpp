// The whole fetch over IMAP as each server lets one in: by TLS of both kinds, by an access token, and no longer.
#include "platform/network.h"
#include "platform/passwords.h"
#include "platform/settings.h"
#include "support/dovecot.h"
#include "support/intake_site.h"
#include <QFile>
#include <QTest>

namespace {

const QString account = QStringLiteral("orders@example.org");

struct login_site : intake_site {
    explicit login_site(const dovecot_options &options) : server(options)
    {
        add_account("orders", account);
        set("kind", "imap");
        set("host", server.host());
        set("port", QString::number(server.imap_port));
        set("security", "none");
        set("user", "ann");
        passwords::forget_remembered();
    }
    ~login_site()
    {
        for (const QString &key : keys)
            DeleteSetting("mail_client", key);
        passwords::forget_remembered();
    }
    void set(const QString &key, const QString &value)
    {
        SaveSetting("mail_client", key, value);
        if (!keys.contains(key))
            keys += key;
    }
    void set_password(const QString &password)
    {
        set("password", password);
        passwords::forget_remembered();
    }
    void put_mails(int count)
    {
        for (int number = 0; number < count; ++number)
            server.deliver("ann", simple_mail{account, "ann@example.net", "Order", "Name: Ann\n"}, next_delivery++);
    }
    int stored() const { return column("select count(*) from orders").value(0).toInt(); }
    qsizetype on_server(const QString &folder = {}) const { return files_in(server.maildir("ann", folder)).size(); }

    dovecot_server server;
    QStringList keys;
};

dovecot_options with_token()
{
    dovecot_options options;
    options.mechanisms = QStringList{"xoauth2"};
    return options;
}

QString number_of(net::trouble trouble)
{
    return QString::number(int(trouble)) + u'|';
}

}

class imap_login_test : public QObject {
    Q_OBJECT
private slots:
    void by_tls_data();
    void by_tls();
    void an_unknown_authority_is_told_once();
    void by_a_token();
    void a_token_that_ran_out_is_fetched_anew();
    void a_refused_token_is_told_once();
    void another_password_since_the_last_fetch();
};

void imap_login_test::by_tls_data()
{
    QTest::addColumn<QString>("security");
    QTest::newRow("STARTTLS") << "starttls";
    QTest::newRow("implicit") << "tls";
}

void imap_login_test::by_tls()
{
    QFETCH(QString, security);
    const certificates made;
    dovecot_options options;
    options.certificate = made.good();
    login_site site(options);
    site.set("security", security);
    site.set("port", QString::number(security == "tls" ? site.server.imaps_port : site.server.imap_port));
    site.set("authority_file", made.authority());
    site.set_password("apple tree");
    site.put_mails(700); // more than a range
    QVERIFY(site.fetch());
    QCOMPARE(site.log_text(), QString());
    QCOMPARE(site.stored(), 700);
    QCOMPARE(site.on_server(), 0);
    QCOMPARE(site.on_server("Tessaly_Inbox"), 700);
    const QStringList logins = site.server.log().split(u'\n').filter("Login: user=<ann>");
    QVERIFY(!logins.isEmpty());
    for (const QString &login : logins)
        QVERIFY2(login.contains(", TLS"), qPrintable(login));
}

void imap_login_test::an_unknown_authority_is_told_once()
{
    const certificates made;
    dovecot_options options;
    options.certificate = made.good();
    login_site site(options);
    site.set("security", "starttls");
    site.set_password("apple tree");
    site.put_mails(1);
    site.fetch();
    QCOMPARE(site.log_entries().size(), 1);
    QVERIFY2(site.log_text().contains("certificate"), qPrintable(site.log_text()));
    QCOMPARE(site.stored(), 0);
    QCOMPARE(site.on_server(), 1);
    QVERIFY(!site.server.log().contains("Login: user=<ann>"));
}

void imap_login_test::by_a_token()
{
    login_site site(with_token());
    site.set("login", "xoauth2");
    site.set("token_command", "echo token-of-ann");
    site.put_mails(5);
    QVERIFY(site.fetch());
    QCOMPARE(site.log_text(), QString());
    QCOMPARE(site.stored(), 5);
    QCOMPARE(site.on_server("Tessaly_Inbox"), 5);
}

void imap_login_test::a_token_that_ran_out_is_fetched_anew()
{
    login_site site(with_token());
    const QString count = site.folder.filePath("asked");
    site.set("login", "xoauth2");
    site.set(
        "token_command",
        QStringLiteral("echo >> '%1'; test $(wc -l < '%1') -gt 1 && echo token-of-ann || echo stale-one").arg(count));
    site.put_mails(2);
    QVERIFY(site.fetch());
    QCOMPARE(site.log_text(), QString());
    QCOMPARE(site.stored(), 2);
    QCOMPARE(bytes_of_file(count), QByteArray("\n\n"));
}

void imap_login_test::a_refused_token_is_told_once()
{
    login_site site(with_token());
    site.set("login", "xoauth2");
    site.set("token_command", "echo token-of-bob");
    site.put_mails(1);
    site.fetch();
    QCOMPARE(site.log_entries().size(), 1);
    QVERIFY2(site.log_entries().value(0).startsWith(number_of(net::trouble::login_refused)),
             qPrintable(site.log_text()));
    QVERIFY(!site.log_text().contains("token-of-bob"));
    QCOMPARE(site.on_server(), 1);
}

void imap_login_test::another_password_since_the_last_fetch()
{
    login_site site({});
    site.set_password("apple tree");
    site.put_mails(2);
    QVERIFY(site.fetch());
    site.server.stop();
    site.server.set_password("ann", "plum tree");
    site.server.start();
    site.put_mails(3);
    site.fetch();
    QCOMPARE(site.log_entries().size(), 1);
    QVERIFY2(site.log_entries().value(0).startsWith(number_of(net::trouble::login_refused)),
             qPrintable(site.log_text()));
    QVERIFY(!site.log_text().contains("apple tree"));
    QCOMPARE(site.stored(), 2);
    QCOMPARE(site.on_server(), 3);
    site.set_password("plum tree");
    QVERIFY(site.fetch());
    QCOMPARE(site.log_entries().size(), 1);
    QCOMPARE(site.stored(), 5);
    QCOMPARE(site.on_server("Tessaly_Inbox"), 5);
}

QTEST_GUILESS_MAIN(imap_login_test)
#include "imap_login_test.moc"
