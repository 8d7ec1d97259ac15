// The whole fetch over POP3 as each server lets one in: by TLS of both kinds, by an access token, and no longer.
#include "intake/mail_source.h"
#include "platform/network.h"
#include "platform/services.h"
#include "support/dovecot.h"
#include "support/intake_site.h"
#include "support/open_mailbox.h"
#include <QTest>

namespace {

const QString account = QStringLiteral("orders@example.org");
const QString date = QStringLiteral("Date: Thu, 1 Jan 2026 12:00:00 +0000\n");

struct login_site : intake_site {
    explicit login_site(const dovecot_options &options) : server(options)
    {
        services.mail_session = &real;
        add_account("orders", account);
        set_pop3_mailbox(server.host(), server.pop3_port);
    }
    ~login_site()
    {
        intake::close_mail_source();
        for (const char *key : {"login", "token_command", "password", "authority_file"})
            SaveSetting("mail_client", key, {});
        passwords::forget_remembered();
    }
    void log_in_by_token(const QString &command, const QString &typed = {})
    {
        SaveSettings("mail_client", {{"login", "xoauth2"}, {"token_command", command}, {"password", typed}});
        passwords::forget_remembered();
    }
    void put_mails(int count)
    {
        for (int number = 0; number < count; ++number)
            server.deliver("ann", {account, "ann@example.net", QString("Order %1").arg(number), "Name: Ann\n", date},
                           1767268800 + number);
    }
    bool fetch_and_leave()
    {
        const bool good = fetch();
        intake::close_mail_source();
        return good;
    }
    int stored() const { return column("select count(*) from orders").value(0).toInt(); }

    dovecot_server server;
    real_mail_session real;
};

dovecot_options only_by_token()
{
    dovecot_options options;
    options.mechanisms = QStringList{"xoauth2"};
    return options;
}

}

class pop3_login_test : public QObject {
    Q_OBJECT
private slots:
    void by_tls_data();
    void by_tls();
    void by_a_token_data();
    void by_a_token();
    void a_token_that_ran_out_is_fetched_anew();
    void a_refused_token_is_told_once();
};

void pop3_login_test::by_tls_data()
{
    QTest::addColumn<QString>("security");
    QTest::newRow("STARTTLS") << "starttls";
    QTest::newRow("implicit") << "tls";
}

void pop3_login_test::by_tls()
{
    QFETCH(QString, security);
    const certificates made;
    dovecot_options options;
    options.certificate = made.good();
    login_site site(options);
    const quint16 port = security == "tls" ? site.server.pop3s_port : site.server.pop3_port;
    set_pop3_mailbox(site.server.host(), port, security, made.authority());
    site.put_mails(150); // more than one write of commands
    QVERIFY(site.fetch_and_leave());
    QCOMPARE(site.log_text(), QString());
    QCOMPARE(site.stored(), 150);
    const QStringList logins = site.server.log().split(u'\n').filter("Login: user=<ann>");
    QVERIFY(!logins.isEmpty());
    for (const QString &login : logins)
        QVERIFY2(login.contains(", TLS"), qPrintable(login));
}

void pop3_login_test::by_a_token_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("typed");
    QTest::newRow("fetched by a command") << "echo token-of-ann" << QString();
    QTest::newRow("typed") << QString() << "token-of-ann";
}

void pop3_login_test::by_a_token()
{
    QFETCH(QString, command);
    QFETCH(QString, typed);
    login_site site(only_by_token());
    site.log_in_by_token(command, typed);
    site.put_mails(5);
    QVERIFY(site.fetch_and_leave());
    QCOMPARE(site.log_text(), QString());
    QCOMPARE(site.stored(), 5);
    QVERIFY2(site.server.log().contains("method=XOAUTH2"), qPrintable(site.server.log()));
}

void pop3_login_test::a_token_that_ran_out_is_fetched_anew()
{
    login_site site(only_by_token());
    const QString count = site.folder.filePath("asked");
    site.log_in_by_token(
        QStringLiteral("echo >> '%1'; test $(wc -l < '%1') -gt 1 && echo token-of-ann || echo stale-one").arg(count));
    site.put_mails(2);
    QVERIFY(site.fetch_and_leave());
    QCOMPARE(site.log_text(), QString());
    QCOMPARE(site.stored(), 2);
    QCOMPARE(bytes_of_file(count), QByteArray("\n\n"));
}

void pop3_login_test::a_refused_token_is_told_once()
{
    login_site site(only_by_token());
    site.log_in_by_token("echo token-of-bob");
    site.put_mails(1);
    QVERIFY(!site.fetch_and_leave());
    QCOMPARE(site.log_entries().size(), 1);
    QVERIFY2(site.log_entries().value(0).startsWith(QString::number(int(net::trouble::login_refused)) + u'|'),
             qPrintable(site.log_text()));
    QVERIFY(!site.log_text().contains("token-of-bob"));
    QCOMPARE(site.stored(), 0);
}

QTEST_GUILESS_MAIN(pop3_login_test)
#include "pop3_login_test.moc"
