// One mail to the sending server: what stands on the wire, and when. What is said of it when the server says no:
// smtp_answers_test.cpp. The next one's envelope in the same breath: smtp_ahead_test.cpp.
#include "support/smtp_scripts.h"
#include <QElapsedTimer>
#include <QTest>

using namespace smtp_scripts;

class smtp_session_test : public QObject {
    Q_OBJECT
private slots:
    void a_mail_goes_in_two_writes();
    void without_pipelining_each_command_waits_for_its_answer();
    void parameters_follow_the_offers_data();
    void parameters_follow_the_offers();
    void a_mail_after_a_refused_one_begins_afresh();
    void a_mail_for_nobody_is_ended_empty();
    void what_cannot_be_carried_is_not_asked_data();
    void what_cannot_be_carried_is_not_asked();
    void letters_beyond_ascii_in_a_domain_need_no_offer();
    void many_recipients_go_in_several_writes();
    void the_last_moment_can_hold_a_mail_back();
    void the_last_moment_comes_once_and_late();
    void a_broken_session_sends_nothing_more();
    void a_stalled_goodbye_holds_nobody_up();
};

void smtp_session_test::a_mail_goes_in_two_writes()
{
    // The server answers only when it has all three lines: who waited for the first answer would wait for ever.
    scripted_server server(greeting() +
                           expect_lines({"MAIL FROM:<shop@example.org> SIZE=24", "RCPT TO:<ann@example.org>", "DATA"}) +
                           script{say("250 2.1.0 Ok\r\n250 2.1.5 Ok\r\n354 Go on\r\n")} + expect_lines(mail_lines) +
                           script{say("250-2.0.0 Ok:\r\n250 queued as 7\r\n"), expect("QUIT"), say("221 Bye\r\n")});
    smtp::session session(place_at(server.port), short_patience());
    const smtp::outcome outcome = session.send({shop, {ann}, mail_bytes}, [] {});
    session.quit();
    QCOMPARE(fates_of(outcome), "sent");
    QCOMPARE(outcome.recipients[0].address, ann);
    QCOMPARE(outcome.recipients[0].words, "250 2.0.0 Ok: queued as 7");
    QVERIFY(!outcome.line_is_broken && !outcome.sender_refused);
    QCOMPARE(server.received(), greeted + "MAIL FROM:<shop@example.org> SIZE=24\nRCPT TO:<ann@example.org>\nDATA\n"
                                          "Subject: Hello\n\nText\n.\nQUIT\n");
    QCOMPARE(server.unexpected(), QByteArray());
}

void smtp_session_test::without_pipelining_each_command_waits_for_its_answer()
{
    // An answer that came before its question would be an early one, and end the conversation.
    scripted_server server(greeting("250 here\r\n") +
                           script{expect("MAIL FROM:<shop@example.org>"), say("250 Ok\r\n"),
                                  expect("RCPT TO:<ann@example.org>"), say("250 Ok\r\n"),
                                  expect("RCPT TO:<bob@example.org>"), say("550 No such user\r\n"), expect("DATA"),
                                  say("354 Go on\r\n")} +
                           expect_lines(mail_lines) + script{say("250 Ok\r\n"), wait_for_end()});
    const smtp::outcome outcome = send_one(server, {ann, bob});
    QCOMPARE(fates_of(outcome), "sent refused");
    QCOMPARE(outcome.recipients[1].words, "550 No such user");
    QCOMPARE(server.unexpected(), QByteArray());
}

void smtp_session_test::parameters_follow_the_offers_data()
{
    QTest::addColumn<QByteArray>("offers");
    QTest::addColumn<QString>("to");
    QTest::addColumn<QByteArray>("mail");
    QTest::addColumn<QByteArray>("line");
    const QByteArray all = "250-here\r\n250-PIPELINING\r\n250-8BITMIME\r\n250-SIZE 0\r\n250 SMTPUTF8\r\n";
    const QString emil = QStringLiteral("émil@example.org");
    QTest::newRow("all offered, nothing needed")
        << all << ann << QByteArray("A: b\r\n\r\nx\r\n") << QByteArray("MAIL FROM:<shop@example.org> SIZE=11");
    QTest::newRow("letters beyond ASCII in the text")
        << all << ann << QByteArray("A: b\r\n\r\n\xC3\xA9\r\n")
        << QByteArray("MAIL FROM:<shop@example.org> SIZE=12 BODY=8BITMIME");
    QTest::newRow("letters beyond ASCII in an address")
        << all << emil << QByteArray("A: b\r\n\r\nx\r\n")
        << QByteArray("MAIL FROM:<shop@example.org> SIZE=11 BODY=8BITMIME SMTPUTF8");
    QTest::newRow("letters beyond ASCII in the header")
        << all << ann << QByteArray("A: \xC3\xA9\r\n\r\nx\r\n")
        << QByteArray("MAIL FROM:<shop@example.org> SIZE=12 BODY=8BITMIME SMTPUTF8");
    QTest::newRow("nothing offered") << QByteArray("250 here\r\n") << ann << QByteArray("A: b\r\n\r\nx\r\n")
                                     << QByteArray("MAIL FROM:<shop@example.org>");
    QTest::newRow("a server that knows no EHLO")
        << QByteArray("502 What?\r\n") << ann << QByteArray("A: b\r\n\r\nx\r\n")
        << QByteArray("MAIL FROM:<shop@example.org>");
    QTest::newRow("small letters, an odd size")
        << QByteArray("250-here\r\n250 size ten megabytes\r\n") << ann << QByteArray("A: b\r\n\r\nxxxxxxxxxxx\r\n")
        << QByteArray("MAIL FROM:<shop@example.org> SIZE=21");
    QTest::newRow("a name that looks like an offer")
        << QByteArray("250 SIZE\r\n") << ann << QByteArray("A: b\r\n\r\nx\r\n")
        << QByteArray("MAIL FROM:<shop@example.org>");
}

void smtp_session_test::parameters_follow_the_offers()
{
    QFETCH(QByteArray, offers);
    QFETCH(QString, to);
    QFETCH(QByteArray, mail);
    QFETCH(QByteArray, line);
    scripted_server server(greeting(offers) + script{expect("MAIL"), say("421 Enough\r\n"), wait_for_end()});
    const smtp::outcome outcome = send_one(server, {to}, mail);
    QCOMPARE(fates_of(outcome), "later");
    QCOMPARE(server.received().mid(greeted.size()).split('\n').value(0), line);
    QCOMPARE(server.unexpected(), QByteArray());
}

void smtp_session_test::a_mail_after_a_refused_one_begins_afresh()
{
    scripted_server server(
        greeting() + expect_lines({"MAIL", "RCPT", "DATA"}) + script{say("250 Ok\r\n550 No\r\n554 No one\r\n")} +
        expect_lines({"RSET", "MAIL", "RCPT", "DATA"}) + script{say("250 Ok\r\n250 Ok\r\n250 Ok\r\n354 Go\r\n")} +
        expect_lines(mail_lines) + script{say("250 Ok\r\n")} + expect_lines({"MAIL", "RCPT", "DATA"}) +
        script{say("250 Ok\r\n250 Ok\r\n354 Go\r\n")} + expect_lines(mail_lines) +
        script{say("250 Ok\r\n"), wait_for_end()});
    {
        smtp::session session(place_at(server.port), short_patience());
        QCOMPARE(fates_of(session.send({shop, {ann}, mail_bytes}, [] {})), "refused");
        QCOMPARE(fates_of(session.send({shop, {bob}, mail_bytes}, [] {})), "sent");
        QCOMPARE(fates_of(session.send({shop, {zoe}, mail_bytes}, [] {})), "sent");
    }
    QCOMPARE(server.unexpected(), QByteArray());
}

void smtp_session_test::a_mail_for_nobody_is_ended_empty()
{
    scripted_server server(
        greeting() + expect_lines({"MAIL", "RCPT", "DATA"}) +
        script{say("250 Ok\r\n550 No\r\n354 Go\r\n"), expect("."), say("554 Nobody to send to\r\n")} +
        expect_lines({"RSET", "MAIL", "RCPT", "DATA"}) + script{say("250 Ok\r\n250 Ok\r\n250 Ok\r\n354 Go\r\n")} +
        expect_lines(mail_lines) + script{say("250 Ok\r\n"), wait_for_end()});
    smtp::session session(place_at(server.port), short_patience());
    bool asked = false;
    const smtp::outcome refused = session.send({shop, {ann}, mail_bytes}, [&] { asked = true; });
    QCOMPARE(fates_of(refused), "refused");
    QVERIFY(!asked && !refused.line_is_broken);
    QCOMPARE(fates_of(session.send({shop, {bob}, mail_bytes}, [] {})), "sent");
    QCOMPARE(server.unexpected(), QByteArray());
}

void smtp_session_test::what_cannot_be_carried_is_not_asked_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    QTest::addColumn<QByteArray>("mail");
    QTest::addColumn<QString>("words");
    const QByteArray small = mail_bytes;
    QTest::newRow("too big") << shop << ann << QByteArray(1001, 'x') << "1001 bytes, and the server takes 1000";
    QTest::newRow("8-bit text") << shop << ann << QByteArray("A: b\r\n\r\n\xFF\r\n") << "does not take them";
    QTest::newRow("8-bit header") << shop << ann << QByteArray("A: \xC3\xA9\r\n\r\nx\r\n") << "does not take them";
    QTest::newRow("letters in the recipient's name") << shop << "émil@example.org" << small << "letters beyond ASCII";
    QTest::newRow("letters in the sender's name") << "émil@example.org" << ann << small << "letters beyond ASCII";
    QTest::newRow("a second line in the recipient")
        << shop << "ann@example.org>\r\nRCPT TO:<bob@example.org" << small << "line end";
    QTest::newRow("a line feed in the recipient") << shop << "ann@example.org\nDATA" << small << "line end";
    QTest::newRow("angle brackets") << shop << "<ann@example.org>" << small << "no address may hold";
    QTest::newRow("a second line in the sender") << "shop@example.org>\r\nRSET\r\n<" << ann << small << "line end";
    QTest::newRow("no sender") << "" << ann << small << "There is no address.";
}

void smtp_session_test::what_cannot_be_carried_is_not_asked()
{
    QFETCH(QString, from);
    QFETCH(QString, to);
    QFETCH(QByteArray, mail);
    QFETCH(QString, words);
    scripted_server server(greeting("250-here\r\n250-PIPELINING\r\n250 SIZE 1000\r\n") +
                           script{expect("QUIT"), say("221 Bye\r\n")});
    smtp::session session(place_at(server.port), short_patience());
    const smtp::outcome outcome = session.send({from, {to}, mail}, [] {});
    session.quit();
    QCOMPARE(fates_of(outcome), "refused");
    QCOMPARE(outcome.sender_refused, from != shop);
    QVERIFY(!outcome.line_is_broken);
    QVERIFY2(outcome.recipients[0].words.contains(words), qPrintable(outcome.recipients[0].words));
    QCOMPARE(server.received(), greeted + "QUIT\n");
}

void smtp_session_test::letters_beyond_ascii_in_a_domain_need_no_offer()
{
    scripted_server server(greeting() +
                           script{expect("MAIL FROM:<shop@example.org> SIZE=24"),
                                  expect("RCPT TO:<ann@xn--bcher-kva.example>"), expect("DATA"),
                                  say("250 Ok\r\n250 Ok\r\n354 Go\r\n")} +
                           expect_lines(mail_lines) + script{say("250 Ok\r\n"), wait_for_end()});
    QCOMPARE(fates_of(send_one(server, {QStringLiteral("ann@bücher.example")})), "sent");
    QCOMPARE(server.unexpected(), QByteArray());
}

void smtp_session_test::many_recipients_go_in_several_writes()
{
    // 100 commands a write: MAIL and 99 recipients, 100 recipients, one recipient and DATA.
    script steps = greeting() + expect_lines(QByteArrayList{"MAIL"} + QByteArrayList(99, "RCPT"));
    steps += script{say(QByteArray("250 Ok\r\n").repeated(100))} + expect_lines(QByteArrayList(100, "RCPT"));
    steps += script{say(QByteArray("550 No\r\n").repeated(100)), expect("RCPT"), expect("DATA")};
    steps += script{say("250 Ok\r\n354 Go\r\n")} + expect_lines(mail_lines) + script{say("250 Ok\r\n"), wait_for_end()};
    scripted_server server(steps);
    QStringList to;
    for (int number = 0; number < 200; ++number)
        to << QStringLiteral("person%1@example.org").arg(number);
    const smtp::outcome outcome = send_one(server, to);
    QCOMPARE(outcome.recipients.size(), 200U);
    for (size_t whom = 0; whom < 200; ++whom) {
        QCOMPARE(outcome.recipients[whom].address, to[qsizetype(whom)]);
        QCOMPARE(name_of(outcome.recipients[whom].became), whom < 99 || whom == 199 ? "sent" : "refused");
    }
    QCOMPARE(server.unexpected(), QByteArray());
}

void smtp_session_test::the_last_moment_can_hold_a_mail_back()
{
    for (const qsizetype size : {10, 100000}) {
        scripted_server server(greeting() + expect_lines({"MAIL", "RCPT", "DATA"}) +
                               script{say("250 Ok\r\n250 Ok\r\n354 Go\r\n"), wait_for_end()});
        smtp::session session(place_at(server.port), short_patience());
        const QByteArray mail = "Subject: Hello\r\n\r\n" + QByteArray("0123456789\r\n").repeated(size / 10);
        bool passed = false;
        try {
            session.send({shop, {ann}, mail}, [] { throw run_time_error{61, QStringLiteral("Disk full")}; });
        } catch (const run_time_error &error) {
            passed = error.number == 61;
        }
        QVERIFY(passed);
        const smtp::outcome next = session.send({shop, {ann}, mail}, [] {});
        QCOMPARE(fates_of(next), "later");
        QVERIFY(next.line_is_broken);
        QVERIFY(!has_ended_a_mail(server.received()));
        QVERIFY(size > 10 || !server.received().contains("0123456789"));
        QCOMPARE(server.unexpected(), QByteArray());
    }
}

void smtp_session_test::the_last_moment_comes_once_and_late()
{
    scripted_server server(greeting() + expect_lines({"MAIL", "RCPT", "DATA"}) +
                           script{say("250 Ok\r\n250 Ok\r\n354 Go\r\n")} + expect_lines(mail_lines) +
                           script{say("250 Ok\r\n"), wait_for_end()});
    smtp::session session(place_at(server.port), short_patience());
    int asked = 0;
    QByteArray said_before;
    const smtp::outcome outcome = session.send({shop, {ann}, mail_bytes}, [&] {
        ++asked;
        said_before = server.received();
    });
    QCOMPARE(fates_of(outcome), "sent");
    QCOMPARE(asked, 1);
    QVERIFY(said_before.endsWith("DATA\n"));
}

void smtp_session_test::a_broken_session_sends_nothing_more()
{
    scripted_server server(greeting() + expect_lines({"MAIL", "RCPT", "DATA"}) + script{reset()});
    smtp::session session(place_at(server.port), short_patience());
    QVERIFY(session.send({shop, {ann}, mail_bytes}, [] {}).line_is_broken);
    const smtp::outcome outcome = session.send({shop, {bob}, mail_bytes}, [] {});
    QCOMPARE(fates_of(outcome), "later");
    QVERIFY(outcome.line_is_broken);
    session.quit();
    QCOMPARE(server.connections(), 1);
}

void smtp_session_test::a_stalled_goodbye_holds_nobody_up()
{
    scripted_server server(greeting() + script{expect("QUIT"), wait_for_end()});
    smtp::session session(place_at(server.port), short_patience(30000));
    QElapsedTimer since;
    since.start();
    session.quit();
    QVERIFY2(since.elapsed() < 1500, "one second of waiting, and none to go");
    QCOMPARE(server.unexpected(), QByteArray());
}

QTEST_GUILESS_MAIN(smtp_session_test)
#include "smtp_session_test.moc"
