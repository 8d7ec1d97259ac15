// One mail to the sending server: what stands on the wire, and what is said of each recipient when the server says no,
// lies, hangs up or falls silent. Servers that play their part well and die on the way: smtp_fault_test.cpp.
#include "platform/real/smtp/smtp_session.h"
#include "support/scripted_server.h"
#include <QElapsedTimer>
#include <QTest>

using namespace scripted;

class smtp_session_test : public QObject {
    Q_OBJECT
private slots:
    void a_mail_goes_in_two_writes();
    void without_pipelining_each_command_waits_for_its_answer();
    void parameters_follow_the_offers_data();
    void parameters_follow_the_offers();
    void answers_decide_the_fates_data();
    void answers_decide_the_fates();
    void a_missing_login_is_no_fate_of_a_mail_data();
    void a_missing_login_is_no_fate_of_a_mail();
    void a_mail_after_a_refused_one_begins_afresh();
    void a_mail_for_nobody_is_ended_empty();
    void what_cannot_be_carried_is_not_asked_data();
    void what_cannot_be_carried_is_not_asked();
    void letters_beyond_ascii_in_a_domain_need_no_offer();
    void many_recipients_go_in_several_writes();
    void the_last_moment_can_hold_a_mail_back();
    void the_last_moment_comes_once_and_late();
    void an_early_answer_holds_a_big_mail_back();
    void a_broken_session_sends_nothing_more();
    void cancelling_ends_the_waiting();
    void the_greeting_of_the_server_must_fit_data();
    void the_greeting_of_the_server_must_fit();
    void a_stalled_goodbye_holds_nobody_up();
};

namespace {

constexpr char mail_bytes[] = "Subject: Hello\r\n\r\nText\r\n";
const QString ann = QStringLiteral("ann@example.org");
const QString bob = QStringLiteral("bob@example.org");
const QString zoe = QStringLiteral("zoe@example.org");
const QString shop = QStringLiteral("shop@example.org");

net::place place_at(quint16 port)
{
    net::place where;
    where.speaks = net::protocol::smtp;
    where.server = {QStringLiteral("127.0.0.1"), port, mail::security::none, {}};
    return where;
}

net::patience short_patience(int answer_ms = 2000)
{
    net::patience patience;
    patience.connect_ms = 5000;
    patience.answer_ms = answer_ms;
    return patience;
}

// Up to the first command about a mail.
script greeting(const QByteArray &offers = "250-here\r\n250-PIPELINING\r\n250 SIZE 1000000\r\n")
{
    return {say("220 here\r\n"), expect("EHLO [127.0.0.1]"), say("250 here\r\n"), expect("EHLO [127.0.0.1]"),
            say(offers)};
}

// What a client of that script says before anything about a mail.
const QByteArray greeted = "EHLO [127.0.0.1]\nEHLO [127.0.0.1]\n";

script expect_lines(const QByteArrayList &lines)
{
    script steps;
    for (const QByteArray &line : lines)
        steps << expect(line);
    return steps;
}

const QByteArrayList mail_lines{"Subject: Hello", "", "Text", "."};

QString name_of(smtp::fate became)
{
    switch (became) {
    case smtp::fate::sent:
        return QStringLiteral("sent");
    case smtp::fate::refused:
        return QStringLiteral("refused");
    case smtp::fate::later:
        return QStringLiteral("later");
    case smtp::fate::unknown:
        return QStringLiteral("unknown");
    }
    return {};
}

QString fates_of(const smtp::outcome &outcome)
{
    QStringList fates;
    for (const smtp::recipient_fate &one : outcome.recipients)
        fates << name_of(one.became);
    return fates.join(u' ');
}

smtp::outcome send_one(const scripted_server &server, const QStringList &to, QByteArrayView mail = mail_bytes,
                       int answer_ms = 2000)
{
    smtp::session session(place_at(server.port), short_patience(answer_ms));
    return session.send(shop, to, mail, [] {});
}

bool has_ended_a_mail(const QByteArray &received)
{
    return received.contains("\n.\n");
}

}

void smtp_session_test::a_mail_goes_in_two_writes()
{
    // The server answers only when it has all three lines: who waited for the first answer would wait for ever.
    scripted_server server(greeting() +
                           expect_lines({"MAIL FROM:<shop@example.org> SIZE=24", "RCPT TO:<ann@example.org>", "DATA"}) +
                           script{say("250 2.1.0 Ok\r\n250 2.1.5 Ok\r\n354 Go on\r\n")} + expect_lines(mail_lines) +
                           script{say("250-2.0.0 Ok:\r\n250 queued as 7\r\n"), expect("QUIT"), say("221 Bye\r\n")});
    smtp::session session(place_at(server.port), short_patience());
    const smtp::outcome outcome = session.send(shop, {ann}, mail_bytes, [] {});
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

void smtp_session_test::answers_decide_the_fates_data()
{
    QTest::addColumn<QByteArray>("envelope"); // the answers to MAIL, three RCPT and DATA, in one piece
    QTest::addColumn<QByteArray>("last");     // the answer to the whole mail; "" when it must not be sent
    QTest::addColumn<QString>("fates");
    QTest::addColumn<bool>("broken");
    const QByteArray yes = "250 Ok\r\n250 Ok\r\n250 Ok\r\n250 Ok\r\n354 Go\r\n";
    const auto row = [](const char *name, const QByteArray &envelope, const QByteArray &last, const char *fates,
                        bool broken) {
        QTest::newRow(name) << envelope << last << QString::fromLatin1(fates) << broken;
    };
    row("all well", yes, "250 Ok\r\n", "sent sent sent", false);
    row("one refused, one later", "250 Ok\r\n550 No\r\n450 Not now\r\n250 Ok\r\n354 Go\r\n", "250 Ok\r\n",
        "refused later sent", false);
    row("forwarded counts as taken", "250 Ok\r\n251 Elsewhere\r\n252 Perhaps\r\n250 Ok\r\n354 Go\r\n", "250 Ok\r\n",
        "sent sent sent", false);
    row("refused at the end", yes, "554 Spam\r\n", "refused refused refused", false);
    row("put off at the end", yes, "451 Disk full\r\n", "later later later", false);
    row("leaves at the end", yes, "421 Must go\r\n", "later later later", true);
    row("taken, and leaves", yes, "250 Ok\r\n421 Must go\r\n", "sent sent sent", true);
    row("two words at the end", yes, "250 Ok\r\n550 No\r\n", "unknown unknown unknown", true);
    row("the same word twice at the end", yes, "250 Ok\r\n250 Ok\r\n", "unknown unknown unknown", true);
    row("asks for more at the end", yes, "354 Go\r\n", "unknown unknown unknown", true);
    row("noise at the end", yes, "Ok\r\n", "unknown unknown unknown", true);
    row("two codes in one answer", yes, "250-Ok\r\n550 No\r\n", "unknown unknown unknown", true);
    row("half a word at the end", yes, "25", "unknown unknown unknown", true);
    row("MAIL refused", "550 Not you\r\n503 No\r\n503 No\r\n503 No\r\n503 No\r\n", "", "refused refused refused",
        false);
    row("MAIL put off", "451 Later\r\n503 No\r\n503 No\r\n503 No\r\n503 No\r\n", "", "later later later", false);
    row("MAIL refused, and yet a recipient taken", "550 Not you\r\n250 Ok\r\n503 No\r\n503 No\r\n354 Go\r\n", "",
        "refused refused refused", true);
    row("nobody taken", "250 Ok\r\n550 No\r\n450 No\r\n550 No\r\n554 No one\r\n", "", "refused later refused", false);
    row("DATA refused", "250 Ok\r\n250 Ok\r\n550 No\r\n250 Ok\r\n554 Not now\r\n", "", "refused refused refused",
        false);
    row("DATA put off", "250 Ok\r\n250 Ok\r\n550 No\r\n250 Ok\r\n451 Not now\r\n", "", "later refused later", false);
    row("leaves at MAIL", "421 Must go\r\n", "", "later later later", true);
    row("leaves at a recipient", "250 Ok\r\n550 No\r\n421 Must go\r\n", "", "refused later later", true);
    row("leaves at DATA", "250 Ok\r\n550 No\r\n250 Ok\r\n250 Ok\r\n421 Must go\r\n", "", "refused later later", true);
    row("one answer too many", "250 Ok\r\n250 Ok\r\n550 No\r\n250 Ok\r\n250 Ok\r\n354 Go\r\n", "",
        "later refused later", true);
    row("one answer too many behind DATA", yes + "250 Ok\r\n", "", "later later later", true);
    row("354 at MAIL", "354 Go\r\n", "", "later later later", true);
    row("354 at a recipient", "250 Ok\r\n354 Go\r\n", "", "later later later", true);
    row("250 at DATA", "250 Ok\r\n250 Ok\r\n250 Ok\r\n250 Ok\r\n250 Ok\r\n", "", "later later later", true);
    row("noise at MAIL", "Hello?\r\n", "", "later later later", true);
    row("code of two digits", "25 Ok\r\n", "", "later later later", true);
    row("code that nobody gives", "650 Ok\r\n", "", "later later later", true);
    row("code without a blank", "2500 Ok\r\n", "", "later later later", true);
    row("another protocol", "* OK IMAP4\r\n", "", "later later later", true);
    row("hangs up at MAIL", "", "", "later later later", true);
    row("hangs up at a recipient", "250 Ok\r\n550 No\r\n", "", "refused later later", true);
    row("hangs up at DATA", "250 Ok\r\n250 Ok\r\n250 Ok\r\n250 Ok\r\n", "", "later later later", true);
    row("bare codes", "250\r\n250\r\n250\r\n250\r\n354\r\n", "250\r\n", "sent sent sent", false);
    row("line feeds alone", "250 Ok\n250 Ok\n250 Ok\n250 Ok\n354 Go\n", "250 Ok\n", "sent sent sent", false);
    row("an answer of many lines",
        "250-" + QByteArray(1000, 'x') + "\r\n250 Ok\r\n250 Ok\r\n250 Ok\r\n250 Ok\r\n354 Go\r\n", "250 Ok\r\n",
        "sent sent sent", false);
    row("an answer without end", "250-" + QByteArray(200000, 'x'), "", "later later later", true);
    row("an answer of lines without end", QByteArray("250-Ok\r\n").repeated(20000), "", "later later later", true);
}

void smtp_session_test::answers_decide_the_fates()
{
    QFETCH(QByteArray, envelope);
    QFETCH(QByteArray, last);
    QFETCH(QString, fates);
    QFETCH(bool, broken);
    script steps = greeting() + expect_lines({"MAIL", "RCPT", "RCPT", "RCPT", "DATA"}) + script{say(envelope)};
    if (!last.isEmpty())
        steps += expect_lines(mail_lines) + script{say(last)};
    scripted_server server(steps);
    const smtp::outcome outcome = send_one(server, {ann, bob, zoe});
    QCOMPARE(fates_of(outcome), fates);
    QCOMPARE(outcome.line_is_broken, broken);
    QCOMPARE(outcome.why_broken.isEmpty(), !broken);
    QCOMPARE(outcome.sender_refused, envelope.startsWith("550"));
    for (const smtp::recipient_fate &one : outcome.recipients)
        QVERIFY2(!one.words.isEmpty() && one.words.size() < 600 && !one.words.contains(u'\n'), qPrintable(one.words));
    if (!last.isEmpty())
        QCOMPARE(server.unexpected(), QByteArray());
    else
        QVERIFY(!has_ended_a_mail(server.received()));
}

void smtp_session_test::a_missing_login_is_no_fate_of_a_mail_data()
{
    QTest::addColumn<QByteArray>("answer");
    for (const char *answer : {"530 Log in", "535 Wrong", "538 Encrypt"})
        QTest::newRow(answer) << QByteArray(answer);
}
void smtp_session_test::a_missing_login_is_no_fate_of_a_mail()
{
    QFETCH(QByteArray, answer);
    scripted_server server(greeting() + expect_lines({"MAIL", "RCPT", "DATA"}) +
                           script{say(answer + "\r\n503 No\r\n503 No\r\n")});
    smtp::session session(place_at(server.port), short_patience());
    QString words;
    try {
        session.send(shop, {ann}, mail_bytes, [] {});
    } catch (const run_time_error &error) {
        if (net::is(error, net::trouble::login_refused))
            words = error.description;
    }
    QVERIFY2(words.endsWith("takes no mail without a login. It said: " + QString::fromLatin1(answer)),
             qPrintable(words));
    QVERIFY(session.send(shop, {ann}, mail_bytes, [] {}).line_is_broken);
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
        QCOMPARE(fates_of(session.send(shop, {ann}, mail_bytes, [] {})), "refused");
        QCOMPARE(fates_of(session.send(shop, {bob}, mail_bytes, [] {})), "sent");
        QCOMPARE(fates_of(session.send(shop, {zoe}, mail_bytes, [] {})), "sent");
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
    const smtp::outcome refused = session.send(shop, {ann}, mail_bytes, [&] { asked = true; });
    QCOMPARE(fates_of(refused), "refused");
    QVERIFY(!asked && !refused.line_is_broken);
    QCOMPARE(fates_of(session.send(shop, {bob}, mail_bytes, [] {})), "sent");
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
    const smtp::outcome outcome = session.send(from, {to}, mail, [] {});
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
            session.send(shop, {ann}, mail, [] { throw run_time_error{61, QStringLiteral("Disk full")}; });
        } catch (const run_time_error &error) {
            passed = error.number == 61;
        }
        QVERIFY(passed);
        const smtp::outcome next = session.send(shop, {ann}, mail, [] {});
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
    const smtp::outcome outcome = session.send(shop, {ann}, mail_bytes, [&] {
        ++asked;
        said_before = server.received();
    });
    QCOMPARE(fates_of(outcome), "sent");
    QCOMPARE(asked, 1);
    QVERIFY(said_before.endsWith("DATA\n"));
}

void smtp_session_test::an_early_answer_holds_a_big_mail_back()
{
    // It says no when it has seen the first lines, and goes on reading, as a server in order does.
    scripted_server server(greeting("250-here\r\n250 PIPELINING\r\n") + expect_lines({"MAIL", "RCPT", "DATA"}) +
                           script{say("250 Ok\r\n250 Ok\r\n354 Go\r\n"), expect("Subject"),
                                  say("552 Too big for me\r\n"), wait_for_end()});
    // More than the system holds for a server that does not read: the no is there before the end can have left.
    const QByteArray mail = "Subject: Hello\r\n\r\n" + QByteArray("0123456789\r\n").repeated(2000000);
    const smtp::outcome outcome = send_one(server, {ann}, mail);
    QCOMPARE(fates_of(outcome), "later");
    QVERIFY(outcome.line_is_broken);
    QVERIFY2(outcome.recipients[0].words.contains(u"552 Too big for me"), qPrintable(outcome.recipients[0].words));
    QVERIFY(!has_ended_a_mail(server.received()));
}

void smtp_session_test::a_broken_session_sends_nothing_more()
{
    scripted_server server(greeting() + expect_lines({"MAIL", "RCPT", "DATA"}) + script{reset()});
    smtp::session session(place_at(server.port), short_patience());
    QVERIFY(session.send(shop, {ann}, mail_bytes, [] {}).line_is_broken);
    const smtp::outcome outcome = session.send(shop, {bob}, mail_bytes, [] {});
    QCOMPARE(fates_of(outcome), "later");
    QVERIFY(outcome.line_is_broken);
    session.quit();
    QCOMPARE(server.connections(), 1);
}

void smtp_session_test::cancelling_ends_the_waiting()
{
    for (const bool at_the_end : {false, true}) {
        script steps = greeting() + expect_lines({"MAIL", "RCPT", "DATA"});
        if (at_the_end)
            steps += script{say("250 Ok\r\n250 Ok\r\n354 Go\r\n")} + expect_lines(mail_lines);
        scripted_server server(steps + script{wait_for_end()});
        bool cancelled = false;
        net::patience patience = short_patience(60000);
        patience.give_up = [&] { return cancelled; };
        smtp::session session(place_at(server.port), patience);
        cancelled = !at_the_end;
        QElapsedTimer since;
        since.start();
        const smtp::outcome outcome = session.send(shop, {ann}, mail_bytes, [&] { cancelled = true; });
        QVERIFY(outcome.line_is_broken);
        QCOMPARE(fates_of(outcome), at_the_end ? "unknown" : "later");
        // Behind the end of a mail it waits some seconds, as then nobody would know what became of it.
        QVERIFY(since.elapsed() < (at_the_end ? 4000 : 1000));
        QVERIFY(!at_the_end || since.elapsed() >= 3000);
    }
}

void smtp_session_test::the_greeting_of_the_server_must_fit_data()
{
    QTest::addColumn<QByteArray>("said"); // to our own EHLO
    QTest::addColumn<quint32>("number");
    const auto number = [](net::trouble kind) { return quint32(kind); };
    QTest::newRow("leaves") << QByteArray("421 Too many of you\r\n") << number(net::trouble::closed);
    QTest::newRow("an answer too many") << QByteArray("250 here\r\n250 Ok\r\n") << number(net::trouble::not_understood);
    QTest::newRow("noise") << QByteArray("here\r\n") << number(net::trouble::not_understood);
    QTest::newRow("asks back") << QByteArray("334 VXNlcg==\r\n") << number(net::trouble::not_understood);
    QTest::newRow("hangs up") << QByteArray() << number(net::trouble::closed);
}

void smtp_session_test::the_greeting_of_the_server_must_fit()
{
    QFETCH(QByteArray, said);
    QFETCH(quint32, number);
    scripted_server server(greeting(said));
    quint32 failed = 0;
    try {
        const smtp::session session(place_at(server.port), short_patience());
    } catch (const run_time_error &error) {
        failed = error.number;
    }
    QCOMPARE(failed, number);
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
