// The SMTP server of other tests takes mail as a server in the world does, and fails where it was told to.
#include "support/fake_sendmail.h"
#include "support/loopback.h"
#include "support/smtp_sink.h"
#include <QElapsedTimer>
#include <QProcess>
#include <QTest>
#include <sys/socket.h>
#include <unistd.h>

class smtp_sink_test : public QObject {
    Q_OBJECT
private slots:
    void a_mail_is_recorded_before_it_is_answered();
    void offers_are_switched();
    void a_refused_recipient_does_not_stop_the_rest();
    void logins_are_asked_for();
    void certificates_are_shown();
    void faults_come_at_their_step_data();
    void faults_come_at_their_step();
    void faults_wait_for_their_mails();
    void rough_clients_are_complained_of();
    void it_is_away_and_comes_back();
    void two_thousand_mails_go_over_one_connection();
    void the_program_says_its_port();
    void a_fake_sendmail_keeps_what_it_was_given();
};

static const QByteArray small = "Subject: x\r\n\r\n..dot\r\n";

// The answer's first line to each step, joined by their codes.
static QByteArray conversation(quint16 port, const QByteArrayList &lines)
{
    raw_connection smtp(port);
    QByteArrayList codes{smtp.line().left(3)};
    for (qsizetype at = 0; at < lines.size(); ++at) {
        if (at > 0 && lines[at - 1] == "DATA" && codes.last() != "354")
            continue; // no mail for who does not take one
        smtp.send(lines[at] + "\r\n");
        QByteArray told = smtp.line();
        while (told.mid(3, 1) == "-")
            told = smtp.line();
        codes += told.left(3);
    }
    return codes.join(' ');
}

static const QByteArrayList whole{
    "EHLO me", "MAIL FROM:<ann@example.org>", "RCPT TO:<bob@example.net>", "DATA", small + ".", "QUIT"};

void smtp_sink_test::a_mail_is_recorded_before_it_is_answered()
{
    smtp_sink sink;
    QCOMPARE(conversation(sink.port(), whole), QByteArray("220 250 250 250 354 250 221"));
    const QList<recorded_mail> mails = sink.mails();
    QCOMPARE(mails.size(), 1);
    QCOMPARE(mails[0].from, QByteArray("ann@example.org"));
    QCOMPARE(mails[0].parameters, QByteArrayList());
    QCOMPARE(mails[0].recipients, QByteArrayList{"bob@example.net"});
    QCOMPARE(mails[0].bytes, QByteArray("Subject: x\r\n\r\n.dot\r\n"));
    QCOMPARE(sink.taken(), 1);
    QCOMPARE(sink.complaints(), QByteArrayList());
}

void smtp_sink_test::offers_are_switched()
{
    const auto offered = [](const smtp_options &options) {
        smtp_sink sink(options);
        raw_connection smtp(sink.port());
        smtp.line();
        smtp.send("EHLO me\r\n");
        return smtp.up_to("250 ");
    };
    const QByteArray all = offered({});
    for (const char *each : {"PIPELINING", "8BITMIME", "SMTPUTF8", "SIZE 52428800"})
        QVERIFY2(all.contains(each), all.constData());
    QVERIFY(!all.contains("AUTH") && !all.contains("STARTTLS"));
    const QByteArray none = offered({.pipelining = false, .eight_bit = false, .utf8 = false, .size = 0});
    QCOMPARE(none, QByteArray("250-localhost\n250 ENHANCEDSTATUSCODES\n"));
}

void smtp_sink_test::a_refused_recipient_does_not_stop_the_rest()
{
    smtp_sink sink({.size = 100,
                    .refusals = {{"*@example.net", "550 5.1.1 No such user"},
                                 {"slow@*", "451 4.2.0 Later"},
                                 {"*@forged.example", "553 5.7.1 Not you", true}}});
    QCOMPARE(conversation(sink.port(), {"EHLO me", "MAIL FROM:<a@forged.example>", "MAIL FROM:<a@b.example> SIZE=101",
                                        "MAIL FROM:<a@b.example> SIZE=100", "RCPT TO:<bob@example.net>",
                                        "RCPT TO:<slow@b.example>", "RCPT TO:<c@b.example>", "DATA", small + "."}),
             QByteArray("220 250 553 552 250 550 451 250 354 250"));
    QCOMPARE(sink.mails().value(0).recipients, QByteArrayList{"c@b.example"});
    QCOMPARE(sink.mails().value(0).parameters, QByteArrayList{"SIZE=100"});
}

void smtp_sink_test::logins_are_asked_for()
{
    smtp_sink sink({.user = "ann", .password = "apple tree", .token = "tok"});
    const QByteArray plain = QByteArray("\0ann\0apple tree", 15).toBase64();
    const QByteArray bearer = QByteArray("user=ann\1auth=Bearer tok\1\1").toBase64();
    const QByteArray wrong = QByteArray("user=ann\1auth=Bearer bad\1\1").toBase64();
    const QByteArray mail = "MAIL FROM:<a@b.example>";
    const auto login = [&](const QByteArrayList &lines) {
        return conversation(sink.port(), lines + QByteArrayList{mail});
    };
    QCOMPARE(login({}), QByteArray("220 530"));
    QCOMPARE(login({"AUTH PLAIN " + plain}), QByteArray("220 235 250"));
    QCOMPARE(login({"AUTH PLAIN", plain}), QByteArray("220 334 235 250"));
    QCOMPARE(login({"AUTH PLAIN " + QByteArray("\0ann\0pear", 9).toBase64()}), QByteArray("220 535 530"));
    QCOMPARE(login({"AUTH LOGIN", QByteArray("ann").toBase64(), QByteArray("apple tree").toBase64()}),
             QByteArray("220 334 334 235 250"));
    QCOMPARE(login({"AUTH XOAUTH2 " + bearer}), QByteArray("220 235 250"));
    QCOMPARE(login({"AUTH XOAUTH2 " + wrong, ""}), QByteArray("220 334 535 530"));
    QCOMPARE(sink.logins(), 4);
}

void smtp_sink_test::certificates_are_shown()
{
    certificates made;
    for (const bool at_once : {true, false}) {
        smtp_sink sink({.certificate = made.good(), .tls_at_once = at_once});
        QProcess openssl;
        openssl.setProcessChannelMode(QProcess::MergedChannels);
        const QStringList starttls = at_once ? QStringList() : QStringList{"-starttls", "smtp"};
        openssl.start("openssl", QStringList{"s_client", "-connect", "localhost:" + QString::number(sink.port()),
                                             "-CAfile", made.authority(), "-no-CApath", "-verify_hostname", "localhost",
                                             "-crlf", "-quiet", "-ign_eof", "-verify_return_error"} +
                                     starttls);
        openssl.write("EHLO me\nMAIL FROM:<a@b.example>\nRCPT TO:<c@d.example>\nDATA\nSubject: y\n\n.\nQUIT\n");
        openssl.closeWriteChannel();
        QVERIFY(openssl.waitForFinished());
        const QByteArray told = openssl.readAll();
        QVERIFY2(told.contains("verify return:1") && told.contains("250 2.0.0 Taken"), told.constData());
        QCOMPARE(sink.mails().value(0).bytes, QByteArray("Subject: y\r\n\r\n"));
    }
}

void smtp_sink_test::faults_come_at_their_step_data()
{
    QTest::addColumn<int>("step");
    QTest::addColumn<int>("deed");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("codes");
    QTest::addColumn<int>("recorded");
    const auto row = [](const char *name, smtp_step step, smtp_fault::deed_of deed, const char *text, const char *codes,
                        int recorded) {
        QTest::newRow(name) << int(step) << int(deed) << QByteArray(text) << QByteArray(codes) << recorded;
    };
    row("closes for a greeting", smtp_step::connect, smtp_fault::close, "", "", 0);
    row("greets with 421", smtp_step::connect, smtp_fault::answer, "421 4.3.2 Busy", "421", 0);
    row("resets at EHLO", smtp_step::ehlo, smtp_fault::reset, "", "220", 0);
    row("refuses MAIL for now", smtp_step::mail, smtp_fault::answer, "451 4.3.0 No", "220 250 451 503 554 221", 0);
    row("closes at RCPT", smtp_step::rcpt, smtp_fault::close, "", "220 250 250", 0);
    row("resets at DATA", smtp_step::data, smtp_fault::reset, "", "220 250 250 250", 0);
    row("closes in the body", smtp_step::body, smtp_fault::close, "", "220 250 250 250 354", 0);
    row("closes before the answer", smtp_step::final, smtp_fault::close, "", "220 250 250 250 354", 0);
    row("refuses at the end", smtp_step::final, smtp_fault::answer, "550 5.7.1 Spam", "220 250 250 250 354 550 221", 0);
    row("closes when it is recorded", smtp_step::recorded, smtp_fault::close, "", "220 250 250 250 354", 1);
    row("421 when it is recorded", smtp_step::recorded, smtp_fault::answer, "421 4.3.2 Down", "220 250 250 250 354 421",
        1);
    row("resets at QUIT", smtp_step::quit, smtp_fault::reset, "", "220 250 250 250 354 250", 1);
}

void smtp_sink_test::faults_come_at_their_step()
{
    QFETCH(int, step);
    QFETCH(int, deed);
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, codes);
    QFETCH(int, recorded);
    const smtp_fault fault{smtp_step(step), smtp_fault::deed_of(deed), text};
    smtp_sink sink({.faults = {fault}});
    QCOMPARE(conversation(sink.port(), whole).trimmed(), codes);
    QCOMPARE(sink.mails().size(), recorded);
    QCOMPARE(conversation(sink.port(), whole), QByteArray("220 250 250 250 354 250 221")); // once only
}

void smtp_sink_test::faults_wait_for_their_mails()
{
    smtp_sink sink({.faults = {{.at = smtp_step::final,
                                .deed = smtp_fault::answer,
                                .text = "451 4.3.0 Full",
                                .after_mails = 2,
                                .times = -1}}});
    const QByteArrayList one = whole.mid(1, 4);
    QCOMPARE(conversation(sink.port(), QByteArrayList{"EHLO me"} + one + one + one + one),
             QByteArray("220 250 250 250 354 250 250 250 354 250 250 250 354 451 250 250 354 451"));
    QCOMPARE(sink.taken(), 2);
    sink.set_faults({});
    QCOMPARE(conversation(sink.port(), whole), QByteArray("220 250 250 250 354 250 221"));
}

void smtp_sink_test::rough_clients_are_complained_of()
{
    smtp_sink sink({.pipelining = false});
    QByteArrayList rough = whole;
    rough[4] = "Subject: \xc3\xa4\n" + QByteArray(999, 'x') + "\r\n.";
    conversation(sink.port(), rough);
    QCOMPARE(sink.complaints(),
             (QByteArrayList{"a line end that is not CRLF", "a line of more than 998 bytes", "eight bits unasked"}));
    raw_connection smtp(sink.port());
    smtp.line();
    smtp.send("NOOP\r\nQUIT\r\n");
    smtp.up_to("221");
    QVERIFY(sink.complaints().contains("pipelined unasked"));
}

void smtp_sink_test::it_is_away_and_comes_back()
{
    smtp_sink sink({.faults = {{.at = smtp_step::data, .deed = smtp_fault::stall}}});
    const quint16 port = sink.port();
    raw_connection stalled(port);
    for (const QByteArray &each : whole.mid(0, 4))
        stalled.send(each + "\r\n");
    QTRY_COMPARE(sink.connections(), 1);
    sink.stop();
    QCOMPARE(connect_loopback(port), -1);
    sink.start();
    QCOMPARE(conversation(port, whole), QByteArray("220 250 250 250 354 250 221"));
}

void smtp_sink_test::two_thousand_mails_go_over_one_connection()
{
    smtp_sink sink;
    raw_connection smtp(sink.port());
    smtp.line();
    QElapsedTimer since;
    since.start();
    for (int number = 0; number < 2000; ++number) {
        smtp.send("MAIL FROM:<a@b.example>\r\nRCPT TO:<c@d.example>\r\nDATA\r\n");
        smtp.up_to("354");
        smtp.send(small + ".\r\n");
        QVERIFY(smtp.line().startsWith("250"));
    }
    qInfo("2,000 mails in %lld ms", since.elapsed());
    QCOMPARE(sink.mails().size(), 2000);
}

void smtp_sink_test::the_program_says_its_port()
{
    QTemporaryDir folder;
    QProcess program;
    program.start(qEnvironmentVariable("SMTP_SINK"),
                  {"--folder", folder.path(), "--fault", "final:1:550 5.7.1 Enough"});
    QVERIFY2(program.waitForReadyRead(), "is SMTP_SINK set?");
    const QByteArray said = program.readLine();
    QVERIFY2(said.startsWith("port "), said.constData());
    const quint16 port = said.mid(5).trimmed().toUShort();
    QCOMPARE(conversation(port, whole), QByteArray("220 250 250 250 354 250 221"));
    QCOMPARE(conversation(port, whole), QByteArray("220 250 250 250 354 550 221"));
    program.terminate();
    QVERIFY(program.waitForFinished());
    QCOMPARE(program.exitCode(), 0);
    QCOMPARE(recorded_mails(folder.path()).size(), 1);
}

void smtp_sink_test::a_fake_sendmail_keeps_what_it_was_given()
{
    fake_sendmail sendmail(75, "try later");
    for (const char *text : {"one\n", "two\n"}) {
        QProcess program;
        program.start(sendmail.program(), {"-f", "a@b.example", "", "two words"});
        program.write(text);
        program.closeWriteChannel();
        QVERIFY(program.waitForFinished());
        QCOMPARE(program.exitCode(), 75);
        QCOMPARE(program.readAllStandardError(), QByteArray("try later"));
    }
    QCOMPARE(sendmail.calls().size(), 2);
    QCOMPARE(sendmail.calls()[0].arguments, (QStringList{"-f", "a@b.example", "", "two words"}));
    QCOMPARE(sendmail.calls()[1].bytes, QByteArray("two\n"));
}

QTEST_GUILESS_MAIN(smtp_sink_test)
#include "smtp_sink_test.moc"
