// Logging in to IMAP, POP3 and SMTP servers: what is accepted, what is refused, and that no secret is ever told.
#include "support/mail_servers.h"
#include "support/scripted_server.h"
#include <QTest>

using namespace scripted;
using mail::security;
using net::protocol;

Q_DECLARE_METATYPE(net::protocol)

class login_test : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void right_ones_are_let_in_data();
    void right_ones_are_let_in();
    void wrong_ones_are_refused_data();
    void wrong_ones_are_refused();
    void odd_passwords_arrive_as_they_are_data();
    void odd_passwords_arrive_as_they_are();
    void names_and_passwords_are_quoted_data();
    void names_and_passwords_are_quoted();
    void line_ends_are_not_sent_data();
    void line_ends_are_not_sent();
    void servers_in_companies_are_asked_the_plain_way_data();
    void servers_in_companies_are_asked_the_plain_way();
    void a_server_without_sasl_is_logged_in_to_data();
    void a_server_without_sasl_is_logged_in_to();
    void a_sending_server_that_takes_no_login_is_told();
    void a_sending_server_needs_no_login();
    void a_server_that_repeats_the_password_is_not_quoted();
    void a_server_that_repeats_the_token_is_not_quoted();
    void a_secret_across_the_end_of_what_is_shown_is_not_begun_data();
    void a_secret_across_the_end_of_what_is_shown_is_not_begun();

private:
    certificates made;
    mail_servers servers{made};
    std::unique_ptr<dovecot_server> odd; // its users have odd passwords
};

static const char *const odd_passwords[] = {
    "with blanks",  " blank at both ends ",  "quote\"within", "back\\slash",
    "\\\"both\\\"", "größe-пароль-密码",     "{20}",          "a%b*c(d)e{f}g",
    "NIL",          "~!@#$^&_-+=|;'<>,.?/`",
};

void login_test::initTestCase()
{
    dovecot_options options;
    options.users.clear();
    int number = 0;
    for (const char *password : odd_passwords)
        options.users += {QStringLiteral("odd%1").arg(number++), QString::fromUtf8(password)};
    options.users += {QStringLiteral("odd%1").arg(number), QString(200, u'p')};
    odd = std::make_unique<dovecot_server>(options);
}

void login_test::right_ones_are_let_in_data()
{
    QTest::addColumn<protocol>("speaks");
    QTest::addColumn<bool>("by_token");
    for (const protocol speaks : all_protocols())
        for (const bool by_token : {false, true})
            QTest::addRow("%s by %s", name_of(speaks), by_token ? "token" : "password") << speaks << by_token;
}

void login_test::right_ones_are_let_in()
{
    QFETCH(protocol, speaks);
    QFETCH(bool, by_token);
    net::place where = servers.place_of(speaks, security::tls, made.good());
    if (by_token) {
        where.password.clear();
        where.token = QStringLiteral("token-of-ann");
    }
    const connecting tried(where);
    QVERIFY2(tried.stream, qPrintable(tried.description));
}

void login_test::wrong_ones_are_refused_data()
{
    QTest::addColumn<protocol>("speaks");
    QTest::addColumn<QString>("user");
    QTest::addColumn<QString>("password");
    QTest::addColumn<QString>("token");
    QTest::addColumn<QString>("words");
    const QString accepts = "127.0.0.1 does not accept this user name and password. It said: ";
    const QString takes = "127.0.0.1 does not accept the access token for this user name.";
    for (const protocol speaks : all_protocols()) {
        const QString said =
            speaks == protocol::smtp ? "5.7.8 Not the right user or password" : "Authentication failed.";
        QTest::addRow("%s: wrong password", name_of(speaks)) << speaks << "ann"
                                                             << "pear-tree"
                                                             << "" << accepts + said;
        QTest::addRow("%s: unknown user", name_of(speaks)) << speaks << "zoe"
                                                           << "pear-tree"
                                                           << "" << accepts + said;
        QTest::addRow("%s: no password", name_of(speaks)) << speaks << "ann"
                                                          << ""
                                                          << "" << accepts + said;
        QTest::addRow("%s: wrong token", name_of(speaks)) << speaks << "ann"
                                                          << ""
                                                          << "stale-token" << takes;
    }
}

void login_test::wrong_ones_are_refused()
{
    QFETCH(protocol, speaks);
    QFETCH(QString, password);
    QFETCH(QString, token);
    QFETCH(QString, words);
    net::place where = servers.place_of(speaks, security::tls, made.good());
    QFETCH(QString, user);
    where.server.user = user;
    where.password = password;
    where.token = token;
    const connecting tried(where);
    QVERIFY2(tried.failed_as(net::trouble::login_refused), qPrintable(tried.description));
    QVERIFY2(tried.description.startsWith(words), qPrintable(tried.description));
    QVERIFY(password.isEmpty() || !tried.description.contains(password));
    QVERIFY(token.isEmpty() || !tried.description.contains(token));
}

void login_test::odd_passwords_arrive_as_they_are_data()
{
    QTest::addColumn<protocol>("speaks");
    QTest::addColumn<QString>("user");
    QTest::addColumn<QString>("password");
    for (const protocol speaks : all_protocols()) {
        int number = 0;
        for (const char *password : odd_passwords)
            QTest::addRow("%s: %s", name_of(speaks), password)
                << speaks << QStringLiteral("odd%1").arg(number++) << QString::fromUtf8(password);
        QTest::addRow("%s: 200 letters", name_of(speaks))
            << speaks << QStringLiteral("odd%1").arg(number) << QString(200, u'p');
    }
}

void login_test::odd_passwords_arrive_as_they_are()
{
    QFETCH(protocol, speaks);
    QFETCH(QString, user);
    QFETCH(QString, password);
    const smtp_sink sink({.user = user, .password = password});
    const quint16 port = speaks == protocol::imap   ? odd->imap_port
                         : speaks == protocol::pop3 ? odd->pop3_port
                                                    : sink.port();
    net::place where = place_at(speaks, security::none, port);
    where.server.user = user;
    where.password = password;
    const connecting right(where);
    QVERIFY2(right.stream, qPrintable(right.description));
    if (speaks != protocol::smtp && user != u"odd0")
        return; // Dovecot takes half a second to say no
    where.password = password + u'x';
    const connecting wrong(where);
    QVERIFY2(wrong.failed_as(net::trouble::login_refused), qPrintable(wrong.description));
    QVERIFY(!wrong.description.contains(password));
}

void login_test::names_and_passwords_are_quoted_data()
{
    QTest::addColumn<QString>("user");
    QTest::addColumn<QString>("password");
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("plain") << "ann"
                           << "apple" << QByteArray("LOGIN ann apple");
    QTest::newRow("blanks") << "ann b"
                            << "apple tree" << QByteArray("LOGIN \"ann b\" \"apple tree\"");
    QTest::newRow("quotes") << "a\"b"
                            << "c\"d" << QByteArray("LOGIN \"a\\\"b\" \"c\\\"d\"");
    QTest::newRow("backslashes") << "corp\\ann"
                                 << "c\\d" << QByteArray("LOGIN \"corp\\\\ann\" \"c\\\\d\"");
    QTest::newRow("200 letters") << QString(200, u'u') << QString(200, u'p')
                                 << "LOGIN " + QByteArray(200, 'u') + ' ' + QByteArray(200, 'p');
}

void login_test::names_and_passwords_are_quoted()
{
    QFETCH(QString, user);
    QFETCH(QString, password);
    QFETCH(QByteArray, line);
    // The plain login command of IMAP, where a quote in the wrong place would begin another argument.
    const script steps{say("* OK here\r\n"), expect("%t CAPABILITY"), say("* CAPABILITY IMAP4rev1\r\n%t OK\r\n"),
                       expect("%t LOGIN"),   say("%t OK in\r\n"),     wait_for_end()};
    scripted_server server({steps.first(3) + script{wait_for_end()}, steps});
    net::place where = place_at(protocol::imap, security::none, server.port);
    where.server.user = user;
    where.password = password;
    const connecting tried(where);
    QVERIFY2(tried.stream, qPrintable(tried.description));
    const QByteArrayList lines = server.received().trimmed().split('\n');
    QCOMPARE(lines.last().mid(lines.last().indexOf(' ') + 1), line);
}

void login_test::line_ends_are_not_sent_data()
{
    QTest::addColumn<QString>("user");
    QTest::addColumn<QString>("password");
    QTest::addColumn<QString>("token");
    QTest::newRow("in the user") << "ann\r\na1 LOGOUT"
                                 << "apple tree"
                                 << "";
    QTest::newRow("in the password") << "ann"
                                     << "apple\ntree"
                                     << "";
    QTest::newRow("a NUL in the password")
        << "ann" << QStringLiteral("apple") + QChar(0) + QStringLiteral("tree") << "";
    QTest::newRow("in the token") << "ann"
                                  << ""
                                  << "token\r\nmore";
}

void login_test::line_ends_are_not_sent()
{
    QFETCH(QString, user);
    QFETCH(QString, password);
    QFETCH(QString, token);
    for (const protocol speaks : all_protocols()) {
        scripted_server server(script{say("* OK\r\n"), wait_for_end()});
        net::place where = place_at(speaks, security::none, server.port);
        where.server.user = user;
        where.password = password;
        where.token = token;
        const connecting tried(where);
        QVERIFY(tried.failed_as(net::trouble::not_configured));
        QCOMPARE(tried.description, "The user name or the password holds a line end or another control character.");
        QCOMPARE(server.connections(), 0);
    }
}

void login_test::servers_in_companies_are_asked_the_plain_way_data()
{
    QTest::addColumn<protocol>("speaks");
    QTest::addColumn<script>("steps");
    QTest::newRow("IMAP")
        << protocol::imap
        << script{say("* OK here\r\n"),
                  expect("%t CAPABILITY"),
                  say("* CAPABILITY IMAP4rev1 AUTH=GSSAPI AUTH=NTLM AUTH=DIGEST-MD5 AUTH=PLAIN SASL-IR\r\n"
                      "%t OK\r\n"),
                  expect("%t AUTHENTICATE PLAIN"),
                  say("%t OK in\r\n"),
                  wait_for_end()};
    QTest::newRow("POP3") << protocol::pop3
                          << script{say("+OK here\r\n"),
                                    expect("CAPA"),
                                    say("+OK\r\nSASL GSSAPI NTLM LOGIN\r\n.\r\n"),
                                    expect("AUTH LOGIN"),
                                    say("+ VXNlcg==\r\n"),
                                    expect("YW5uQGV4YW1wbGUub3Jn"),
                                    say("+ UGFzcw==\r\n"),
                                    expect("YXBwbGUgdHJlZQ=="),
                                    say("+OK in\r\n"),
                                    wait_for_end()};
    QTest::newRow("SMTP") << protocol::smtp
                          << script{say("220 here\r\n"),
                                    expect("EHLO"),
                                    say("250-here\r\n250 AUTH GSSAPI NTLM LOGIN\r\n"),
                                    expect("AUTH LOGIN"),
                                    say("334 VXNlcg==\r\n"),
                                    expect("YW5uQGV4YW1wbGUub3Jn"),
                                    say("334 UGFzcw==\r\n"),
                                    expect("YXBwbGUgdHJlZQ=="),
                                    say("235 in\r\n"),
                                    wait_for_end()};
}

void login_test::servers_in_companies_are_asked_the_plain_way()
{
    QFETCH(protocol, speaks);
    QFETCH(script, steps);
    scripted_server server(steps);
    net::place where = place_at(speaks, security::none, server.port);
    where.server.user = QStringLiteral("ann@example.org"); // a name with a domain is what GSSAPI would be tried for
    const connecting tried(where);
    QVERIFY2(tried.stream, qPrintable(tried.description));
    QCOMPARE(server.unexpected(), QByteArray());
    QCOMPARE(server.connections(), 1);
}

void login_test::a_server_without_sasl_is_logged_in_to_data()
{
    QTest::addColumn<protocol>("speaks");
    QTest::addColumn<script>("steps");
    QTest::newRow("IMAP, the login command") << protocol::imap
                                             << script{say("* OK here\r\n"),
                                                       expect("%t CAPABILITY"),
                                                       say("* CAPABILITY IMAP4rev1\r\n%t OK\r\n"),
                                                       expect("%t LOGIN ann \"apple tree\""),
                                                       say("%t OK in\r\n"),
                                                       wait_for_end()};
    QTest::newRow("POP3, user and password")
        << protocol::pop3 << script{say("+OK here\r\n"), expect("CAPA"), say("-ERR what?\r\n"),
                                    expect("USER ann"),  say("+OK\r\n"), expect("PASS apple tree"),
                                    say("+OK in\r\n"),   wait_for_end()};
    QTest::newRow("SMTP, a challenge") << protocol::smtp
                                       << script{say("220 here\r\n"),
                                                 expect("EHLO"),
                                                 say("250-here\r\n250 AUTH CRAM-MD5\r\n"),
                                                 expect("AUTH CRAM-MD5"),
                                                 say("334 PDEuMUBoZXJlPg==\r\n"),
                                                 expect(""),
                                                 say("235 in\r\n"),
                                                 wait_for_end()};
}

void login_test::a_server_without_sasl_is_logged_in_to()
{
    QFETCH(protocol, speaks);
    QFETCH(script, steps);
    // It may look at a first connection, and then log in by a second.
    scripted_server server({steps.first(3) + script{wait_for_end()}, steps});
    const connecting tried(place_at(speaks, security::none, server.port));
    QVERIFY2(tried.stream, qPrintable(tried.description + QString::fromUtf8(server.unexpected())));
    QCOMPARE(server.unexpected(), QByteArray());
}

void login_test::a_sending_server_that_takes_no_login_is_told()
{
    scripted_server server(
        script{say("220 here\r\n"), expect("EHLO"), say("250-here\r\n250 SIZE\r\n"), wait_for_end()});
    const connecting tried(place_at(protocol::smtp, security::none, server.port));
    QVERIFY(tried.failed_as(net::trouble::login_refused));
    QVERIFY2(tried.description.startsWith(u"127.0.0.1 does not offer to log in."), qPrintable(tried.description));
}

void login_test::a_sending_server_needs_no_login()
{
    const smtp_sink sink;
    net::place where = place_at(protocol::smtp, security::none, sink.port());
    where.server.user.clear();
    const connecting tried(where);
    QVERIFY2(tried.stream, qPrintable(tried.description));
}

void login_test::a_server_that_repeats_the_password_is_not_quoted()
{
    const script greeting{say("* OK here\r\n"), expect("%t CAPABILITY"),
                          say("* CAPABILITY IMAP4rev1 AUTH=PLAIN SASL-IR\r\n%t OK\r\n"),
                          expect("%t AUTHENTICATE PLAIN AGFubgBhcHBsZSB0cmVl")};
    for (const char *said : {"apple tree", "AGFubgBhcHBsZSB0cmVl", "YXBwbGUgdHJlZQ=="}) {
        scripted_server server(greeting +
                               script{say("%t NO not with " + QByteArray(said) + ", no\r\n"), wait_for_end()});
        const connecting tried(place_at(protocol::imap, security::none, server.port));
        QVERIFY(tried.failed_as(net::trouble::login_refused));
        QCOMPARE(tried.description, "127.0.0.1 does not accept this user name and password. It said: not with ***, no");
    }
}

void login_test::a_server_that_repeats_the_token_is_not_quoted()
{
    // "token-of-ann", and what is sent of it: "user=ann", 1, "auth=Bearer token-of-ann", 1, 1.
    const QByteArray blob("dXNlcj1hbm4BYXV0aD1CZWFyZXIgdG9rZW4tb2YtYW5uAQE=");
    const script greeting{say("* OK here\r\n"), expect("%t CAPABILITY"),
                          say("* CAPABILITY IMAP4rev1 AUTH=XOAUTH2 SASL-IR\r\n%t OK\r\n"),
                          expect("%t AUTHENTICATE XOAUTH2 " + blob)};
    for (const QByteArray &said : {QByteArray("token-of-ann"), blob, QByteArray("dG9rZW4tb2YtYW5u")}) {
        scripted_server server(greeting + script{say("%t NO not with " + said + ", no\r\n"), wait_for_end()});
        net::place where = place_at(protocol::imap, security::none, server.port);
        where.token = QStringLiteral("token-of-ann");
        const connecting tried(where);
        QVERIFY2(tried.failed_as(net::trouble::login_refused), qPrintable(tried.description));
        QCOMPARE(tried.description,
                 "127.0.0.1 does not accept the access token for this user name. It said: not with ***, no");
    }
}

void login_test::a_secret_across_the_end_of_what_is_shown_is_not_begun_data()
{
    QTest::addColumn<QByteArray>("said");
    QTest::addColumn<QString>("shown");
    const QString sentence = QStringLiteral("127.0.0.1 does not accept this user name and password. It said: ");
    // Of what a server says, 300 letters are shown, and 2,000 of a line are read; "a NO " or the like is before them.
    QTest::newRow("where the showing ends")
        << QByteArray(294, 'x') + "apple tree, no" << sentence + QString(294, u'x') + "***, n";
    QTest::newRow("where the showing ends, encoded")
        << QByteArray(290, 'x') + "AGFubgBhcHBsZSB0cmVl" << sentence + QString(290, u'x') + "***";
    // Hidden ones make a line short enough to be shown to its very end, and there it was cut: "A001 NO " and 99 times
    // twenty letters leave twelve of the last one, or some more behind a shorter tag.
    const int times = 100;
    QTest::newRow("where the reading ends")
        << QByteArray("AGFubgBhcHBsZSB0cmVl").repeated(times) << sentence + QString("***").repeated(times);
}

void login_test::a_secret_across_the_end_of_what_is_shown_is_not_begun()
{
    QFETCH(QByteArray, said);
    QFETCH(QString, shown);
    scripted_server server(
        {say("* OK here\r\n"), expect("%t CAPABILITY"), say("* CAPABILITY IMAP4rev1 AUTH=PLAIN SASL-IR\r\n%t OK\r\n"),
         expect("%t AUTHENTICATE PLAIN AGFubgBhcHBsZSB0cmVl"), say("%t NO " + said + "\r\n"), wait_for_end()});
    const connecting tried(place_at(protocol::imap, security::none, server.port));
    QVERIFY2(tried.failed_as(net::trouble::login_refused), qPrintable(tried.description));
    QCOMPARE(tried.description, shown);
}

QTEST_GUILESS_MAIN(login_test)
#include "login_test.moc"
