// What becomes of the mails in the Outbox when a server, a file or a login fails.
#include "support/delivery_site.h"
#include "support/maildir_files.h"
#include "support/scripted_server.h"
#include "support/smtp_sink.h"
#include <QDir>
#include <QFile>
#include <QSet>
#include <QTest>

using outbox::mail_state;
Q_DECLARE_METATYPE(outbox::mail_state)

class delivery_trouble_test : public QObject {
    Q_OBJECT
private slots:
    void a_sender_that_the_server_refuses();
    void an_address_is_never_sent_as_it_is_when_it_cannot_be_one();
    void nobody_answers();
    void a_server_that_dies_data();
    void a_server_that_dies();
    void a_mail_whose_file_cannot_be_read_stays_data();
    void a_mail_whose_file_cannot_be_read_stays();
    void a_server_that_wants_a_login_refuses_no_mail_data();
    void a_server_that_wants_a_login_refuses_no_mail();
    void the_words_of_a_break_are_not_those_of_a_refusal();
    void a_token_that_grew_old_is_fetched_anew_data();
    void a_token_that_grew_old_is_fetched_anew();
    void files_that_cannot_be_removed_are_told_and_nothing_goes_twice();
};

void delivery_trouble_test::a_sender_that_the_server_refuses()
{
    smtp_sink sink({.refusals = {{.pattern = "orders@*", .reply = "553 5.7.1 Not yours", .sender = true}}});
    delivery_site site(sink.port());
    site.hand_over("ann@example.net");
    QCOMPARE(site.deliver(), "");
    QCOMPARE(only_mail().state, mail_state::refused);
    QVERIFY2(only_mail().reason.startsWith("The server refuses to send as orders@example.org."),
             qPrintable(only_mail().reason));
    QVERIFY(only_mail().reason.contains("Not yours"));
}

void delivery_trouble_test::an_address_is_never_sent_as_it_is_when_it_cannot_be_one()
{
    smtp_sink sink;
    delivery_site site(sink.port());
    const QString id = site.hand_over("ann@example.net>\r\nRCPT TO:<all@example.org");
    QVERIFY(outbox::send_again(id));
    QCOMPARE(site.deliver(), "");
    QCOMPARE(only_mail().state, mail_state::refused);
    QCOMPARE(sink.mails().size(), 0);
}

void delivery_trouble_test::nobody_answers()
{
    smtp_sink sink;
    delivery_site site(sink.port());
    sink.stop();
    site.hand_over("ann@example.net");
    const QString failure = site.deliver();
    QVERIFY2(failure.contains("127.0.0.1"), qPrintable(failure));
    QCOMPARE(waiting_addresses(), QStringList{"ann@example.net"});
    sink.start();
    QCOMPARE(site.deliver(), "");
    QCOMPARE(sink.mails().size(), 1);
    QCOMPARE(site.outbox_files(), QStringList());
}

// What the Outbox says is what the server recorded: each mail is in one place, at most one in both, as unknown.
void delivery_trouble_test::a_server_that_dies_data()
{
    QTest::addColumn<int>("step");
    QTest::addColumn<int>("deed");
    QTest::addColumn<int>("after");
    const QList<std::pair<smtp_step, const char *>> steps{
        {smtp_step::mail, "at MAIL"}, {smtp_step::rcpt, "at RCPT"},     {smtp_step::data, "at DATA"},
        {smtp_step::body, "in it"},   {smtp_step::final, "at its end"}, {smtp_step::recorded, "behind its end"}};
    for (const auto &[step, name] : steps)
        for (const int after : {0, 7})
            for (const auto deed : {smtp_fault::close, smtp_fault::reset})
                QTest::addRow("%s, after %d, %s", name, after, deed == smtp_fault::close ? "closing" : "resetting")
                    << int(step) << int(deed) << after;
}
void delivery_trouble_test::a_server_that_dies()
{
    QFETCH(int, step);
    QFETCH(int, deed);
    QFETCH(int, after);
    smtp_sink sink({.faults = {{.at = smtp_step(step), .deed = smtp_fault::deed_of(deed), .after_mails = after}}});
    delivery_site site(sink.port());
    site.hand_over_many(12);
    const QString failure = site.deliver();
    QStringList doubtful;
    for (const auto &mail : outbox::contents())
        if (mail.state == mail_state::unknown)
            doubtful += mail.To;
    const bool before_its_end = step < int(smtp_step::body); // a short mail leaves in one piece with its end
    QCOMPARE(doubtful.size(), before_its_end ? 0 : 1);
    QCOMPARE(failure.isEmpty(), before_its_end); // once more over a new connection
    QCOMPARE(site.deliver(), "");
    QStringList reached;
    for (const auto &mail : sink.mails())
        reached += QString::fromLatin1(mail.recipients.first());
    QCOMPARE(QSet<QString>(reached.begin(), reached.end()).size(), reached.size()); // none twice
    for (int number = 1; number <= 12; ++number) {
        const QString address = QString("%1@example.net").arg(number);
        QVERIFY2(reached.contains(address) || doubtful.contains(address), qPrintable(address));
    }
    QCOMPARE(outbox::count().waiting, 0);
    QCOMPARE(outbox::count().unknown, doubtful.size());
}

void delivery_trouble_test::a_mail_whose_file_cannot_be_read_stays_data()
{
    QTest::addColumn<QString>("instead");
    QTest::addColumn<mail_state>("state");
    QTest::addColumn<QString>("reason");
    QTest::newRow("it is gone") << "nothing" << mail_state::refused
                                << "The mail's file cannot be read: it is not there any more.";
    QTest::newRow("it is empty") << "an empty file" << mail_state::refused
                                 << "The mail's file cannot be read: it is empty.";
    QTest::newRow("it is a folder") << "a folder" << mail_state::waiting
                                    << "The mail's file cannot be read: Is a directory.";
}
void delivery_trouble_test::a_mail_whose_file_cannot_be_read_stays()
{
    QFETCH(QString, instead);
    smtp_sink sink;
    delivery_site site(sink.port());
    const QString id = site.hand_over("ann@example.net");
    site.hand_over("bob@example.net");
    QCOMPARE(outbox::count().waiting, 2); // both are known
    QFile file(site.path("outbox/" + id + ".eml"));
    QVERIFY(file.remove());
    QVERIFY(instead != "an empty file" || file.open(QIODevice::WriteOnly));
    QVERIFY(instead != "a folder" || QDir().mkdir(file.fileName()));
    QCOMPARE(site.deliver(), "");
    QCOMPARE(sink.mails().size(), 1);
    QCOMPARE(sink.mails().at(0).recipients, QByteArrayList{"bob@example.net"});
    for (int run = 0; run < 2; ++run) {
        QCOMPARE(only_mail().id, id);
        QCOMPARE(only_mail().To, QStringList{"ann@example.net"});
        QTEST(only_mail().state, "state");
        QTEST(only_mail().reason, "reason");
        site.begin_a_new_run();
        outbox::hand_over({});
        QVERIFY(outbox::discard(outbox::contents().back().id)); // a new run puts the folder right
    }
    QVERIFY(outbox::discard(id));
    QVERIFY(outbox::contents().empty());
}

void delivery_trouble_test::a_server_that_wants_a_login_refuses_no_mail_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<bool>("of_sender");
    for (const bool of_sender : {true, false}) {
        const auto row = [of_sender](const char *name, const QByteArray &reply) {
            QTest::addRow("%s, at %s", name, of_sender ? "MAIL" : "RCPT") << reply << of_sender;
        };
        row("a login", "530 5.7.0 Authentication required");
        row("another login", "535 5.7.8 Bad credentials");
        row("an encrypted login", "538 5.7.11 Encryption required");
    }
}
void delivery_trouble_test::a_server_that_wants_a_login_refuses_no_mail()
{
    QFETCH(QByteArray, reply);
    QFETCH(bool, of_sender);
    smtp_sink sink({.refusals = {{.pattern = "*", .reply = reply, .sender = of_sender}}});
    delivery_site site(sink.port());
    site.hand_over("ann@example.net");
    site.hand_over("bob@example.net");
    const QString failure = site.deliver();
    QVERIFY2(failure.contains(" takes no mail without a login. It said: " + QString::fromLatin1(reply)),
             qPrintable(failure));
    QCOMPARE(waiting_addresses(), (QStringList{"ann@example.net", "bob@example.net"}));
    QCOMPARE(sink.connections(), 1);
}

void delivery_trouble_test::the_words_of_a_break_are_not_those_of_a_refusal()
{
    smtp_sink sink({.faults = {{.at = smtp_step::final, .deed = smtp_fault::close, .times = -1}},
                    .refusals = {{"ann@*", "550 5.1.1 No such user"}}});
    delivery_site site(sink.port());
    site.hand_over("ann@example.net; bob@example.net");
    const QString failure = site.deliver();
    QVERIFY2(failure.contains("closed the connection"), qPrintable(failure));
    QVERIFY2(!failure.contains("No such user"), qPrintable(failure));
}

void delivery_trouble_test::a_token_that_grew_old_is_fetched_anew_data()
{
    QTest::addColumn<bool>("at_mail");
    QTest::newRow("refused at the login") << false;
    QTest::newRow("refused at MAIL") << true;
}
void delivery_trouble_test::a_token_that_grew_old_is_fetched_anew()
{
    using namespace scripted;
    QFETCH(bool, at_mail);
    const script begin{say("220 here\r\n"),    expect("EHLO"),  say("250-here\r\n250 AUTH XOAUTH2\r\n"),
                       expect("AUTH XOAUTH2"), say("334 \r\n"), expect("")};
    const script logged_in{say("235 Welcome\r\n"), expect("EHLO"), say("250 here\r\n"), expect("MAIL")};
    const script refused = begin + (at_mail ? logged_in + script{say("530 Token is too old\r\n"), wait_for_end()}
                                            : script{say("535 Token is too old\r\n"), wait_for_end()});
    scripted_server server({refused, refused});
    delivery_site site(server.port);
    site.settings.smtp.user = "smith";
    site.settings.smtp_logs_in = site.settings.use_token = true;
    const QString runs = site.path("runs");
    site.settings.token_command = QString("echo x >> '%1'; wc -l < '%1'").arg(runs); // 1, 2, 3 ...
    site.set(site.settings);
    site.hand_over("ann@example.net");
    const QString failure = site.deliver();
    QVERIFY2(failure.contains("Token is too old"), qPrintable(failure));
    QCOMPARE(bytes_of_file(runs), QByteArray("x\nx\n")); // once more, and not for ever
    QCOMPARE(server.connections(), 2);
    QCOMPARE(waiting_addresses(), QStringList{"ann@example.net"});
}

// Its state file cannot be removed as long as a folder stands in its place.
void delivery_trouble_test::files_that_cannot_be_removed_are_told_and_nothing_goes_twice()
{
    smtp_sink sink({.delay = std::chrono::milliseconds(100)});
    delivery_site site(sink.port());
    const QString id = site.hand_over("ann@example.net");
    const QString name = site.path("outbox/" + id + ".json");
    delivery::start([](const delivery::report &) {});
    QTRY_COMPARE(sink.connections(), 1); // the mail is in hand, and the server takes its time
    QVERIFY(QFile::remove(name));
    QVERIFY(QDir().mkdir(name));
    QTRY_VERIFY2(delivery::present().line.contains("Permission denied"), qPrintable(delivery::present().line));
    delivery::stop();
    QCOMPARE(sink.taken(), 1);
    QVERIFY(site.outbox_files().contains("sending.journal"));
    site.begin_a_new_run();
    QCOMPARE(outbox::count().waiting, 0);
    QCOMPARE(outbox::count().unknown, 0);
    QVERIFY(QDir().rmdir(name));
    site.begin_a_new_run();
    site.hand_over("bob@example.net"); // puts the folder right
    QCOMPARE(site.deliver(), "");
    QCOMPARE(sink.taken(), 2);
    QCOMPARE(site.outbox_files(), QStringList());
}

QTEST_GUILESS_MAIN(delivery_trouble_test)
#include "delivery_trouble_test.moc"
