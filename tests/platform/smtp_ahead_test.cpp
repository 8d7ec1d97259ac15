// The envelope of the next mail behind the end of the present one: what stands on the wire, and what is said of both
// when the server says no, lies, hangs up or falls silent between them. One mail alone: smtp_session_test.cpp.
#include "support/smtp_scripts.h"
#include <QTest>

using namespace smtp_scripts;
Q_DECLARE_METATYPE(smtp::parcel)

class smtp_ahead_test : public QObject {
    Q_OBJECT
private slots:
    void the_next_envelope_goes_behind_the_end();
    void answers_decide_the_fates_of_both_data();
    void answers_decide_the_fates_of_both();
    void answers_that_come_late_are_waited_for();
    void a_missing_login_is_told_by_the_mail_it_was_said_of();
    void a_server_without_pipelining_is_asked_in_turn();
    void what_cannot_be_asked_for_waits_for_its_turn_data();
    void what_cannot_be_asked_for_waits_for_its_turn();
    void another_mail_than_the_announced_finds_the_session_broken();
    void no_goodbye_is_said_into_a_mail();
    void a_big_mail_carries_the_next_envelope_too();
};

namespace {

const smtp::parcel first_mail{shop, {ann}, mail_bytes};
const smtp::parcel second_mail{shop, {bob}, "Subject: Second\r\n\r\nMore\r\n"};
const QByteArrayList envelope{"MAIL", "RCPT", "DATA"};
const QByteArrayList second_lines{"Subject: Second", "", "More", "."};

// Up to the end of the first mail and the envelope of the second: nothing is answered between the two.
script up_to_both()
{
    return greeting() + expect_lines(envelope) + script{say("250 Ok\r\n250 Ok\r\n354 Go\r\n")} +
           expect_lines(mail_lines) + expect_lines(envelope);
}

}

void smtp_ahead_test::the_next_envelope_goes_behind_the_end()
{
    scripted_server server(up_to_both() + script{say("250 First\r\n250 Ok\r\n250 Ok\r\n354 Go\r\n")} +
                           expect_lines(second_lines) +
                           script{say("250 Second\r\n"), expect("QUIT"), say("221 Bye\r\n")});
    smtp::session session(place_at(server.port), short_patience());
    int moments = 0;
    const auto count_moment = [&moments] { ++moments; };
    const smtp::outcome one = session.send(first_mail, count_moment, &second_mail);
    QCOMPARE(moments, 1);
    QVERIFY2(!server.received().contains("Second"), "an envelope is no mail");
    const smtp::outcome two = session.send(second_mail, count_moment);
    QCOMPARE(moments, 2);
    session.quit();
    QCOMPARE(fates_of(one), "sent");
    QCOMPARE(one.recipients[0].words, "250 First");
    QCOMPARE(fates_of(two), "sent");
    QCOMPARE(two.recipients[0].words, "250 Second");
    QCOMPARE(server.unexpected(), QByteArray());
    QCOMPARE(server.connections(), 1);
}

void smtp_ahead_test::answers_decide_the_fates_of_both_data()
{
    QTest::addColumn<QByteArray>("answers"); // to the end of the first mail, and to the envelope of the second
    QTest::addColumn<bool>("stalls");        // behind them; else it hangs up
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("second");
    QTest::addColumn<bool>("broken_at_once");
    const auto row = [](const char *name, const QByteArray &answers, const char *first, const char *second,
                        bool broken_at_once) {
        for (const bool stalls : {false, true})
            QTest::addRow("%s, and %s", name, stalls ? "falls silent" : "hangs up")
                << answers << stalls << QString::fromLatin1(first) << QString::fromLatin1(second) << broken_at_once;
    };
    row("first taken", "250 Ok\r\n", "sent", "later", false);
    row("first refused", "554 Spam\r\n", "refused", "later", false);
    row("first put off", "451 Full\r\n", "later", "later", false);
    row("leaves at the end", "421 Must go\r\n", "later", "later", true);
    row("taken, and leaves", "250 Ok\r\n421 Must go\r\n", "sent", "later", true);
    row("taken, and leaves at the next recipient", "250 Ok\r\n250 Ok\r\n421 Must go\r\n", "sent", "later", true);
    row("taken, and leaves at the next DATA", "250 Ok\r\n250 Ok\r\n250 Ok\r\n421 Must go\r\n", "sent", "later", true);
    row("next sender refused", "250 Ok\r\n550 Not you\r\n503 No\r\n503 No\r\n", "sent", "refused", false);
    row("next sender put off", "250 Ok\r\n451 Later\r\n503 No\r\n503 No\r\n", "sent", "later", false);
    row("next recipient refused", "250 Ok\r\n250 Ok\r\n550 No\r\n554 No one\r\n", "sent", "refused", false);
    row("next recipient put off", "250 Ok\r\n250 Ok\r\n450 No\r\n554 No one\r\n", "sent", "later", false);
    row("next DATA refused", "250 Ok\r\n250 Ok\r\n250 Ok\r\n554 No\r\n", "sent", "refused", false);
    row("next DATA put off", "250 Ok\r\n250 Ok\r\n250 Ok\r\n451 No\r\n", "sent", "later", false);
    row("next one wanted", "250 Ok\r\n250 Ok\r\n250 Ok\r\n354 Go\r\n", "sent", "unknown", false);
    row("half a word of the next", "250 Ok\r\n25", "sent", "later", false);
    // Which word is about which mail is then known no more.
    row("one word too many", "250 Ok\r\n250 Ok\r\n250 Ok\r\n250 Ok\r\n354 Go\r\n", "unknown", "later", true);
    row("a no too many", "250 Ok\r\n550 No\r\n250 Ok\r\n250 Ok\r\n354 Go\r\n", "unknown", "later", true);
    row("noise behind the end", "250 Ok\r\nHello?\r\n", "unknown", "later", true);
    row("noise at the end", "Hello?\r\n", "unknown", "later", true);
    row("354 at the end", "354 Go\r\n", "unknown", "later", true);
    row("354 at the next sender", "250 Ok\r\n354 Go\r\n", "unknown", "later", true);
    row("nothing", "", "unknown", "later", true);
}

void smtp_ahead_test::answers_decide_the_fates_of_both()
{
    QFETCH(QByteArray, answers);
    QFETCH(bool, stalls);
    QFETCH(bool, broken_at_once);
    const bool wants_second = answers.endsWith("354 Go\r\n") && !broken_at_once;
    script steps = up_to_both() + script{say(answers)};
    if (wants_second)
        steps += expect_lines(second_lines);
    scripted_server server(steps + script{stalls ? wait_for_end() : hang_up()});
    smtp::session session(place_at(server.port), short_patience(200));
    const smtp::outcome one = session.send(
        first_mail, [] {}, &second_mail);
    QTEST(fates_of(one), "first");
    // The line may be found broken already when the server has hung up.
    QVERIFY(one.line_is_broken == broken_at_once || (one.line_is_broken && !stalls));
    bool asked = false;
    const smtp::outcome two = session.send(second_mail, [&asked] { asked = true; });
    QTEST(fates_of(two), "second");
    QCOMPARE(asked, wants_second);
    QCOMPARE(two.sender_refused, answers.contains("550 Not you"));
    QVERIFY(wants_second || !server.received().contains("Second"));
    QCOMPARE(server.unexpected(), QByteArray());
}

void smtp_ahead_test::answers_that_come_late_are_waited_for()
{
    // The second mail's answers are said only when its sender waits for them: the first one is through by then.
    scripted_server server(up_to_both() + script{say("250 First\r\n"), say("250 Ok\r\n"), say("250 Ok\r\n354 Go\r\n")} +
                           expect_lines(second_lines) + script{say("250 Second\r\n"), wait_for_end()});
    smtp::session session(place_at(server.port), short_patience());
    QCOMPARE(fates_of(session.send(
                 first_mail, [] {}, &second_mail)),
             "sent");
    QCOMPARE(fates_of(session.send(second_mail, [] {})), "sent");
    QCOMPARE(server.unexpected(), QByteArray());
}

void smtp_ahead_test::a_missing_login_is_told_by_the_mail_it_was_said_of()
{
    scripted_server server(up_to_both() + script{say("250 Ok\r\n530 Log in\r\n503 No\r\n503 No\r\n"), wait_for_end()});
    smtp::session session(place_at(server.port), short_patience());
    QCOMPARE(fates_of(session.send(
                 first_mail, [] {}, &second_mail)),
             "sent");
    bool refused = false;
    try {
        session.send(second_mail, [] {});
    } catch (const run_time_error &error) {
        refused = net::is(error, net::trouble::login_refused);
    }
    QVERIFY(refused);
}

void smtp_ahead_test::a_server_without_pipelining_is_asked_in_turn()
{
    script steps = greeting("250 here\r\n");
    for (const QByteArrayList &lines : {mail_lines, second_lines})
        steps += script{expect("MAIL"),    say("250 Ok\r\n"), expect("RCPT"),
                        say("250 Ok\r\n"), expect("DATA"),    say("354 Go\r\n")} +
                 expect_lines(lines) + script{say("250 Ok\r\n")};
    scripted_server server(steps + script{expect("QUIT"), say("221 Bye\r\n")});
    smtp::session session(place_at(server.port), short_patience());
    QCOMPARE(fates_of(session.send(
                 first_mail, [] {}, &second_mail)),
             "sent");
    QVERIFY(!server.received().contains("bob"));
    QCOMPARE(fates_of(session.send(second_mail, [] {})), "sent");
    session.quit();
    QCOMPARE(server.unexpected(), QByteArray());
}

void smtp_ahead_test::what_cannot_be_asked_for_waits_for_its_turn_data()
{
    QTest::addColumn<smtp::parcel>("next");
    QStringList many;
    for (int number = 0; number < 99; ++number)
        many << QStringLiteral("person%1@example.org").arg(number);
    QTest::newRow("too many recipients") << smtp::parcel{shop, many, mail_bytes};
    QTest::newRow("long addresses") << smtp::parcel{shop, QStringList(60, QString(60, 'x') + "@example.org"),
                                                    "A: b\r\n"};
    QTest::newRow("too big") << smtp::parcel{shop, {bob}, QByteArray(1000001, 'x')};
    QTest::newRow("no sender") << smtp::parcel{QString(), {bob}, mail_bytes};
}
void smtp_ahead_test::what_cannot_be_asked_for_waits_for_its_turn()
{
    QFETCH(smtp::parcel, next);
    scripted_server server(greeting() + expect_lines(envelope) + script{say("250 Ok\r\n250 Ok\r\n354 Go\r\n")} +
                           expect_lines(mail_lines) + script{say("250 Ok\r\n"), expect("QUIT"), say("221 Bye\r\n")});
    smtp::session session(place_at(server.port), short_patience());
    QCOMPARE(fates_of(session.send(
                 first_mail, [] {}, &next)),
             "sent");
    session.quit();
    QCOMPARE(server.unexpected(), QByteArray());
}

void smtp_ahead_test::another_mail_than_the_announced_finds_the_session_broken()
{
    scripted_server server(up_to_both() + script{say("250 Ok\r\n250 Ok\r\n250 Ok\r\n354 Go\r\n"), wait_for_end()});
    smtp::session session(place_at(server.port), short_patience());
    QCOMPARE(fates_of(session.send(
                 first_mail, [] {}, &second_mail)),
             "sent");
    const smtp::outcome other = session.send({shop, {zoe}, mail_bytes}, [] {});
    QCOMPARE(fates_of(other), "later");
    QVERIFY(other.line_is_broken);
    QVERIFY(!server.received().contains("zoe"));
}

void smtp_ahead_test::no_goodbye_is_said_into_a_mail()
{
    scripted_server server(up_to_both() + script{say("250 Ok\r\n250 Ok\r\n250 Ok\r\n354 Go\r\n"), wait_for_end()});
    {
        smtp::session session(place_at(server.port), short_patience());
        QCOMPARE(fates_of(session.send(
                     first_mail, [] {}, &second_mail)),
                 "sent");
        session.quit();
    }
    QCOMPARE(server.received().count("\nDATA\n"), 2);
    QVERIFY(!server.received().contains("QUIT"));
}

void smtp_ahead_test::a_big_mail_carries_the_next_envelope_too()
{
    const QByteArray text = "Subject: Hello\r\n\r\n" + QByteArray("0123456789\r\n").repeated(3000);
    script steps = greeting() + expect_lines(envelope) + script{say("250 Ok\r\n250 Ok\r\n354 Go\r\n")} +
                   expect_lines({"Subject", ""}) + expect_lines(QByteArrayList(3000, "0123456789")) +
                   expect_lines({"."}) + expect_lines(envelope);
    scripted_server server(steps + script{say("250 Ok\r\n250 Ok\r\n250 Ok\r\n354 Go\r\n")} +
                           expect_lines(second_lines) + script{say("250 Ok\r\n"), wait_for_end()});
    smtp::session session(place_at(server.port), short_patience());
    QCOMPARE(fates_of(session.send(
                 {shop, {ann}, text}, [] {}, &second_mail)),
             "sent");
    QCOMPARE(fates_of(session.send(second_mail, [] {})), "sent");
    QCOMPARE(server.unexpected(), QByteArray());
}

QTEST_GUILESS_MAIN(smtp_ahead_test)
#include "smtp_ahead_test.moc"
