// The mail server of other tests starts, offers what a test asked for, and takes the mails that are dropped in.
#include "support/dovecot.h"
#include "support/loopback.h"
#include "support/wire_proxy.h"
#include <QDir>
#include <QProcess>
#include <QTest>

class dovecot_test : public QObject {
    Q_OBJECT
private slots:
    void a_dropped_mail_is_seen_and_moved();
    void pop3_lists_a_dropped_mail();
    void a_wrong_password_is_refused();
    void hidden_capabilities_are_not_offered();
    void folders_stand_below_the_inbox_where_wanted();
    void a_token_is_accepted_or_refused();
    void plain_logins_are_refused_where_wanted();
    void a_proxy_brings_it_to_the_usual_address();
    void certificates_are_shown_data();
    void certificates_are_shown();
    void it_starts_again_on_its_ports();
    void it_leaves_nothing_running();
};

static const simple_mail hello{"ann@localhost", "bob@localhost", "Hello", "Hello, Ann\n"};

static QByteArray logged_in(raw_connection &imap, const QByteArray &user_and_password = "ann \"apple tree\"")
{
    imap.line();
    imap.send("l LOGIN " + user_and_password + "\r\n");
    return imap.up_to("l ");
}

static QByteArray said(raw_connection &imap, const QByteArray &command)
{
    imap.send("t " + command + "\r\n");
    return imap.up_to("t ");
}

void dovecot_test::a_dropped_mail_is_seen_and_moved()
{
    dovecot_server server;
    const QString file = server.deliver("ann", hello, 1767268800);
    server.make_folder("ann", "Tessaly_Inbox");
    raw_connection imap(server.imap_port);
    QVERIFY(logged_in(imap).contains("l OK"));
    const QByteArray selected = said(imap, "SELECT INBOX");
    QVERIFY2(selected.contains("* 1 EXISTS"), qPrintable(server.log()));
    const QByteArray fetched = said(imap, "FETCH 1 (INTERNALDATE BODY.PEEK[])");
    QVERIFY2(fetched.contains("01-Jan-2026 13:00:00 +0100"), fetched.constData()); // Berlin, as the test's TZ
    QVERIFY2(fetched.contains("Hello, Ann"), fetched.constData());
    const QByteArray moved = said(imap, "MOVE 1 Tessaly_Inbox");
    QVERIFY2(moved.contains("t OK"), moved.constData());
    QCOMPARE(files_in(server.maildir("ann")), QStringList());
    QCOMPARE(files_in(server.maildir("ann", "Tessaly_Inbox")).size(), 1);
}

void dovecot_test::pop3_lists_a_dropped_mail()
{
    dovecot_options options;
    options.uidl = "%g";
    dovecot_server server(options);
    const QString file = server.deliver("bob", hello, 1767268800);
    raw_connection pop3(server.pop3_port);
    QVERIFY(pop3.line().startsWith("+OK"));
    QVERIFY(pop3.ask("USER bob").startsWith("+OK"));
    QVERIFY(pop3.ask("PASS pear tree").startsWith("+OK"));
    QCOMPARE(pop3.ask("UIDL 1"), QByteArray("+OK 1 " + file.toUtf8()));
}

void dovecot_test::a_wrong_password_is_refused()
{
    dovecot_server server;
    raw_connection imap(server.imap_port);
    QVERIFY(logged_in(imap, "ann wrong").contains("l NO [AUTHENTICATIONFAILED]"));
}

void dovecot_test::hidden_capabilities_are_not_offered()
{
    dovecot_options options;
    options.hidden_capabilities = QStringList{"MOVE", "UIDPLUS", "QRESYNC", "ENABLE"};
    dovecot_server server(options), usual;
    for (const bool before_login : {true, false}) {
        raw_connection limited(server.imap_port), full(usual.imap_port);
        if (!before_login) {
            QVERIFY(logged_in(limited).contains("l OK"));
            QVERIFY(logged_in(full).contains("l OK"));
        }
        const QByteArray offered = said(limited, "CAPABILITY");
        const QByteArray usually = said(full, "CAPABILITY");
        QVERIFY2(offered.contains("IDLE") && usually.contains("ENABLE"), offered.constData());
        for (const char *name : {" MOVE", " UIDPLUS", " QRESYNC", " ENABLE"})
            QVERIFY2(!offered.contains(name), offered.constData());
        QCOMPARE(usually.contains(" MOVE"), !before_login);
    }
}

void dovecot_test::folders_stand_below_the_inbox_where_wanted()
{
    dovecot_options options;
    options.prefix = "INBOX/";
    options.separator = "/";
    dovecot_server server(options);
    server.make_folder("ann", "tessaly_inbox");
    raw_connection imap(server.imap_port);
    logged_in(imap);
    const QByteArray listed = said(imap, "LIST \"\" \"*\"");
    QVERIFY2(listed.contains("\"/\" INBOX/tessaly_inbox"), listed.constData());
    const QByteArray made = said(imap, "CREATE INBOX/one/two");
    QVERIFY2(made.contains("t OK"), made.constData());
    QVERIFY(QDir(server.maildir("ann", "one.two")).exists());
}

void dovecot_test::a_token_is_accepted_or_refused()
{
    dovecot_options options;
    options.mechanisms = QStringList{"plain", "login", "xoauth2", "oauthbearer"};
    dovecot_server server(options);
    for (const bool right : {true, false}) {
        raw_connection imap(server.imap_port);
        QVERIFY(imap.line().contains("AUTH=XOAUTH2"));
        const QByteArray token = right ? "token-of-ann" : "token-of-bob";
        imap.send("x AUTHENTICATE XOAUTH2 " +
                  ("user=ann\x01"
                   "auth=Bearer " +
                   token + "\x01\x01")
                      .toBase64() +
                  "\r\n");
        const QByteArray answer = imap.up_to(right ? "x " : "+ ");
        QVERIFY2(right ? answer.contains("x OK") : answer.startsWith("+ "), answer.constData());
    }
}

void dovecot_test::plain_logins_are_refused_where_wanted()
{
    certificates made;
    dovecot_options options;
    options.certificate = made.good();
    options.refuse_plain_logins = true;
    dovecot_server server(options);
    raw_connection imap(server.imap_port, server.host());
    const QByteArray greeting = imap.line();
    QVERIFY2(greeting.contains("STARTTLS") && greeting.contains("LOGINDISABLED"), greeting.constData());
    imap.send("l LOGIN ann \"apple tree\"\r\n");
    QVERIFY(imap.up_to("l ").contains("l NO [PRIVACYREQUIRED]"));
}

void dovecot_test::a_proxy_brings_it_to_the_usual_address()
{
    certificates made;
    dovecot_options options;
    options.certificate = made.good();
    options.refuse_plain_logins = true;
    dovecot_server server(options);
    const QByteArray begin = "Begin TLS negotiation now.\r\n";
    wire_proxy proxy(server.imap_port, {.faults = {{.kind = wire_fault::insert, .after = begin, .text = "lie\r\n"}}},
                     server.host());
    raw_connection imap(proxy.port);
    QVERIFY(imap.line().contains("LOGINDISABLED"));
    QCOMPARE(imap.ask("s STARTTLS"), QByteArray("s OK ") + begin.chopped(2));
    QCOMPARE(imap.line(), QByteArray("lie"));
}

void dovecot_test::certificates_are_shown_data()
{
    QTest::addColumn<QString>("protocol"); // empty: TLS from the first byte
    QTest::addColumn<bool>("expired");
    QTest::addColumn<QByteArray>("verdict");
    QTest::newRow("TLS") << "" << false << QByteArray("Verify return code: 0 (ok)");
    QTest::newRow("STARTTLS") << "imap" << false << QByteArray("Verify return code: 0 (ok)");
    QTest::newRow("POP3's STLS") << "pop3" << false << QByteArray("Verify return code: 0 (ok)");
    QTest::newRow("expired") << "imap" << true << QByteArray("Verify return code: 10 (certificate has expired)");
}

void dovecot_test::certificates_are_shown()
{
    QFETCH(QString, protocol);
    QFETCH(bool, expired);
    QFETCH(QByteArray, verdict);
    certificates made;
    dovecot_options options;
    options.certificate = expired ? made.expired() : made.good();
    dovecot_server server(options);
    const quint16 port = protocol.isEmpty()   ? server.imaps_port
                         : protocol == "imap" ? server.imap_port
                                              : server.pop3_port;
    QStringList arguments{"s_client",         "-connect",       "localhost:" + QString::number(port),
                          "-CAfile",          made.authority(), "-no-CApath",
                          "-verify_hostname", "localhost"};
    if (!protocol.isEmpty())
        arguments += {"-starttls", protocol};
    QProcess openssl;
    openssl.setProcessChannelMode(QProcess::MergedChannels);
    openssl.setStandardInputFile(QProcess::nullDevice());
    openssl.start("openssl", arguments);
    QVERIFY(openssl.waitForFinished());
    const QByteArray told = openssl.readAll();
    QVERIFY2(told.contains(verdict), told.constData());
}

void dovecot_test::it_starts_again_on_its_ports()
{
    dovecot_server server;
    const quint16 port = server.imap_port;
    for (const bool softly : {true, false}) {
        raw_connection open(port);
        QVERIFY(!open.line().isEmpty());
        softly ? server.stop() : server.kill();
        QCOMPARE(connect_loopback(port), -1);
        server.start();
        QCOMPARE(server.imap_port, port);
        raw_connection imap(port);
        QVERIFY(logged_in(imap).contains("l OK"));
    }
}

void dovecot_test::it_leaves_nothing_running()
{
    QString folder;
    pid_t group = 0;
    {
        dovecot_server server;
        raw_connection imap(server.imap_port);
        QVERIFY(logged_in(imap).contains("l OK"));
        folder = server.folder_path();
        group = server.pid();
        QCOMPARE(::kill(-group, 0), 0);
    }
    QVERIFY(!QDir(folder).exists());
    QTRY_COMPARE(::kill(-group, 0), -1); // the killed are gone as soon as the system has buried them
}

QTEST_GUILESS_MAIN(dovecot_test)
#include "dovecot_test.moc"
