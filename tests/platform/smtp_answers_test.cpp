// What is said of each recipient when the sending server says no, lies, hangs up or falls silent. Servers that play
// their part well and die on the way: smtp_fault_test.cpp.
#include "support/smtp_scripts.h"
#include <QElapsedTimer>
#include <QTest>

using namespace smtp_scripts;

class smtp_answers_test : public QObject {
    Q_OBJECT
private slots:
    void answers_decide_the_fates_data();
    void answers_decide_the_fates();
    void a_missing_login_is_no_fate_of_a_mail_data();
    void a_missing_login_is_no_fate_of_a_mail();
    void an_early_answer_holds_a_big_mail_back();
    void cancelling_ends_the_waiting();
    void the_greeting_of_the_server_must_fit_data();
    void the_greeting_of_the_server_must_fit();
};

void smtp_answers_test::answers_decide_the_fates_data()
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

void smtp_answers_test::answers_decide_the_fates()
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

void smtp_answers_test::a_missing_login_is_no_fate_of_a_mail_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<int>("at"); // of MAIL, RCPT, DATA
    for (const char *answer : {"530 Log in", "535 Wrong", "538 Encrypt"})
        for (const int at : {0, 1, 2})
            QTest::addRow("%s, at command %d", answer, at) << QByteArray(answer) << at;
}
void smtp_answers_test::a_missing_login_is_no_fate_of_a_mail()
{
    QFETCH(QByteArray, answer);
    QFETCH(int, at);
    scripted_server server(greeting() + expect_lines({"MAIL", "RCPT", "DATA"}) +
                           script{say(QByteArray("250 Ok\r\n").repeated(at) + answer + "\r\n" +
                                      QByteArray("503 No\r\n").repeated(2 - at))});
    smtp::session session(place_at(server.port), short_patience());
    QString words;
    try {
        session.send({shop, {ann}, mail_bytes}, [] {});
    } catch (const run_time_error &error) {
        if (net::is(error, net::trouble::login_refused))
            words = error.description;
    }
    QVERIFY2(words.endsWith("takes no mail without a login. It said: " + QString::fromLatin1(answer)),
             qPrintable(words));
    QVERIFY(session.send({shop, {ann}, mail_bytes}, [] {}).line_is_broken);
}

void smtp_answers_test::an_early_answer_holds_a_big_mail_back()
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

void smtp_answers_test::cancelling_ends_the_waiting()
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
        const smtp::outcome outcome = session.send({shop, {ann}, mail_bytes}, [&] { cancelled = true; });
        QVERIFY(outcome.line_is_broken);
        QCOMPARE(fates_of(outcome), at_the_end ? "unknown" : "later");
        // Behind the end of a mail it waits some seconds, as then nobody would know what became of it.
        QVERIFY(since.elapsed() < (at_the_end ? 4000 : 1000));
        QVERIFY(!at_the_end || since.elapsed() >= 3000);
    }
}

void smtp_answers_test::the_greeting_of_the_server_must_fit_data()
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

void smtp_answers_test::the_greeting_of_the_server_must_fit()
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

QTEST_GUILESS_MAIN(smtp_answers_test)
#include "smtp_answers_test.moc"
