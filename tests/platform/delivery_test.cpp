// From the Outbox to a server: what went, what is left, and why. Killed on the way: delivery_kill_test.cpp.
#include "platform/real/outbox/delivery_worker.h"
#include "support/delivery_site.h"
#include "support/fake_sendmail.h"
#include "support/smtp_sink.h"
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QSet>
#include <QTest>
#include <QThread>

using outbox::mail_state;
Q_DECLARE_METATYPE(outbox::mail_state)

class delivery_test : public QObject {
    Q_OBJECT
private slots:
    void what_waits_goes_out_in_its_order_over_one_connection();
    void nothing_goes_out_where_nothing_is_set();
    void several_recipients_and_what_is_left_data();
    void several_recipients_and_what_is_left();
    void a_refused_mail_keeps_the_words_and_can_be_sent_again();
    void a_sender_that_the_server_refuses();
    void a_mail_without_an_account_data();
    void a_mail_without_an_account();
    void an_address_is_never_sent_as_it_is_when_it_cannot_be_one();
    void nobody_answers();
    void a_server_that_dies_data();
    void a_server_that_dies();
    void the_hours_limit_holds_mailings_only();
    void the_worker_sends_what_is_handed_over();
    void the_worker_tries_again_when_it_is_told_that_settings_changed();
    void switching_sending_off_is_heeded_between_two_mails();
    void a_corrected_password_does_not_wait();
    void a_mail_whose_file_cannot_be_read_stays_data();
    void a_mail_whose_file_cannot_be_read_stays();
    void a_server_that_wants_a_login_refuses_no_mail_data();
    void a_server_that_wants_a_login_refuses_no_mail();
    void the_words_of_a_break_are_not_those_of_a_refusal();
    void sendmail_is_found_in_the_search_path();
    void singles_overtake_mailings();
    void closing_in_the_middle_leaves_the_rest();
    void a_stalled_server_does_not_hold_up_closing();
    void two_thousand_mails();
};

void delivery_test::what_waits_goes_out_in_its_order_over_one_connection()
{
    smtp_sink sink;
    delivery_site site(sink.port());
    site.hand_over_many(50);
    QCOMPARE(site.deliver(), "");
    const auto mails = sink.mails();
    QCOMPARE(mails.size(), 50);
    for (int number = 1; number <= 50; ++number) {
        QCOMPARE(mails[number - 1].recipients, QByteArrayList{QByteArray::number(number) + "@example.net"});
        QCOMPARE(mails[number - 1].from, "orders@example.org");
        QVERIFY(mails[number - 1].bytes.contains("\r\nTo: " + QByteArray::number(number) + "@example.net\r\n"));
        QVERIFY(mails[number - 1].bytes.endsWith("A line of text.\r\n"));
    }
    QCOMPARE(sink.connections(), 1);
    QCOMPARE(sink.complaints(), QByteArrayList());
    QCOMPARE(site.outbox_files(), QStringList());
    QCOMPARE(outbox::count().waiting, 0);
    QCOMPARE(delivery::present().line, "");
}

void delivery_test::nothing_goes_out_where_nothing_is_set()
{
    delivery_site site;
    site.hand_over("ann@example.net");
    site.hand_over("bob@example.net");
    QCOMPARE(site.deliver(), "");
    QCOMPARE(outbox::count().waiting, 2);
    QCOMPARE(delivery::present().line, "2 mails wait in the Outbox: sending is switched off");
}

void delivery_test::several_recipients_and_what_is_left_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<bool>("waits");
    QTest::newRow("one is unknown to the server") << QByteArray("550 5.1.1 No such user") << false;
    QTest::newRow("one is to come later") << QByteArray("450 4.2.0 Greylisted") << true;
}
void delivery_test::several_recipients_and_what_is_left()
{
    QFETCH(QByteArray, reply);
    smtp_sink sink({.refusals = {{"bob@*", reply}}});
    delivery_site site(sink.port());
    site.hand_over("ann@example.net; bob@example.net; eve@example.net");
    QCOMPARE(site.deliver(), "");
    QCOMPARE(sink.mails().size(), 1);
    QCOMPARE(sink.mails().at(0).recipients, (QByteArrayList{"ann@example.net", "eve@example.net"}));
    QCOMPARE(only_mail().To, QStringList{"bob@example.net"});
    QTEST(only_mail().state == mail_state::waiting, "waits");
    QVERIFY2(only_mail().reason.contains(QString::fromLatin1(reply.sliced(10))), qPrintable(only_mail().reason));
    site.begin_a_new_run();
    QCOMPARE(only_mail().To, QStringList{"bob@example.net"});
    QTEST(only_mail().state == mail_state::waiting, "waits");
}

void delivery_test::a_refused_mail_keeps_the_words_and_can_be_sent_again()
{
    smtp_sink strict({.refusals = {{"*", "550 5.7.1 Not today"}}});
    delivery_site site(strict.port());
    const QString id = site.hand_over("ann@example.net");
    QCOMPARE(site.deliver(), "");
    QCOMPARE(only_mail().state, mail_state::refused);
    QVERIFY(only_mail().reason.contains("Not today"));
    QCOMPARE(delivery::present().line, "1 mail was refused");
    QCOMPARE(site.deliver(), "");
    QCOMPARE(strict.connections(), 1); // nothing waited
    smtp_sink kind;
    site.settings.smtp.port = kind.port();
    site.set(site.settings);
    QVERIFY(outbox::send_again(id));
    QCOMPARE(only_mail().reason, "");
    QCOMPARE(site.deliver(), "");
    QCOMPARE(kind.mails().size(), 1);
    QCOMPARE(outbox::contents().size(), size_t(0));
}

void delivery_test::a_sender_that_the_server_refuses()
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

void delivery_test::a_mail_without_an_account_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("smtp_user");
    QTest::addColumn<QString>("user");
    QTest::addColumn<QString>("sender");
    QTest::newRow("the address that is set") << "me@example.org"
                                             << "smtp@example.org"
                                             << "in@example.org"
                                             << "me@example.org";
    QTest::newRow("the login of the sending server") << ""
                                                     << "smtp@example.org"
                                                     << "in@example.org"
                                                     << "smtp@example.org";
    QTest::newRow("the login of the mailbox") << ""
                                              << "smith"
                                              << "in@example.org"
                                              << "in@example.org";
    QTest::newRow("none") << ""
                          << "smith"
                          << "jones"
                          << "";
}
void delivery_test::a_mail_without_an_account()
{
    QFETCH(QString, sender);
    smtp_sink sink;
    delivery_site site(sink.port());
    outbox::outgoing_mail mail;
    mail.To = {"ann@example.net"};
    outbox::hand_over(mail); // before anything is set
    QFETCH(QString, from);
    QFETCH(QString, smtp_user);
    QFETCH(QString, user);
    site.settings.from = from;
    site.settings.smtp.user = smtp_user;
    site.settings.incoming.user = user;
    site.set(site.settings);
    QCOMPARE(site.deliver(), "");
    QCOMPARE(sink.mails().size(), sender.isEmpty() ? 0 : 1);
    if (sender.isEmpty()) {
        QCOMPARE(only_mail().state, mail_state::refused);
        QCOMPARE(only_mail().reason, "There is no address that it could go out as.");
    } else {
        QCOMPARE(sink.mails().at(0).from, sender.toLatin1());
        QVERIFY(sink.mails().at(0).bytes.contains("From: " + sender.toLatin1() + "\r\n"));
    }
}

void delivery_test::an_address_is_never_sent_as_it_is_when_it_cannot_be_one()
{
    smtp_sink sink;
    delivery_site site(sink.port());
    const QString id = site.hand_over("ann@example.net>\r\nRCPT TO:<all@example.org");
    QVERIFY(outbox::send_again(id));
    QCOMPARE(site.deliver(), "");
    QCOMPARE(only_mail().state, mail_state::refused);
    QCOMPARE(sink.mails().size(), 0);
}

void delivery_test::nobody_answers()
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
void delivery_test::a_server_that_dies_data()
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
void delivery_test::a_server_that_dies()
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

void delivery_test::the_hours_limit_holds_mailings_only()
{
    smtp_sink sink;
    delivery_site site(sink.port());
    site.settings.mailings_per_hour = 60; // ten at once
    site.set(site.settings);
    site.hand_over_many(15);
    site.hand_over("ann@example.net");
    site.hand_over("bob@example.net", outbox::mail_kind::answer);
    QCOMPARE(site.deliver(), "");
    QCOMPARE(sink.mails().size(), 12);
    QCOMPARE(sink.mails().at(0).recipients, QByteArrayList{"ann@example.net"});
    QCOMPARE(sink.mails().at(1).recipients, QByteArrayList{"bob@example.net"});
    QCOMPARE(outbox::count().waiting, 5);
    site.begin_a_new_run();
    QCOMPARE(site.deliver(), "");
    QVERIFY(sink.mails().size() <= 13); // a restart gives none away; a minute gives one
}

void delivery_test::the_worker_sends_what_is_handed_over()
{
    smtp_sink sink;
    delivery_site site(sink.port());
    QStringList lines;
    int sent = 0;
    const auto *here = QThread::currentThread();
    bool always_here = true;
    delivery::start([&](const delivery::report &now) {
        lines += now.line;
        sent = now.sent;
        always_here = always_here && QThread::currentThread() == here;
    });
    site.hand_over("ann@example.net");
    QTRY_COMPARE(sent, 1);
    site.hand_over("bob@example.net");
    QTRY_COMPARE(sent, 2);
    QTRY_COMPARE(lines.last(), "");
    QCOMPARE(sink.mails().size(), 2);
    QVERIFY(always_here);
    delivery::stop();
    QCOMPARE(site.outbox_files(), QStringList());
}

void delivery_test::the_worker_tries_again_when_it_is_told_that_settings_changed()
{
    smtp_sink sink;
    delivery_site site(sink.port());
    sink.stop();
    site.hand_over("ann@example.net");
    QString line;
    delivery::start([&](const delivery::report &now) { line = now.line; });
    QTRY_VERIFY2(line.contains(": tried again at "), qPrintable(line));
    QVERIFY2(line.startsWith("1 mail waits in the Outbox: "), qPrintable(line));
    site.hand_over("bob@example.net"); // no reason to try at once
    QTRY_VERIFY(line.startsWith("2 mails wait in the Outbox: "));
    QCOMPARE(sink.connections(), 0);
    sink.start();
    delivery::wake();
    QTRY_COMPARE(line, "");
    QCOMPARE(sink.mails().size(), 2);
}

void delivery_test::switching_sending_off_is_heeded_between_two_mails()
{
    smtp_sink sink({.delay = std::chrono::milliseconds(10)});
    delivery_site site(sink.port());
    site.hand_over_many(300);
    delivery::start([](const delivery::report &) {});
    QTRY_VERIFY(sink.taken() > 5);
    site.settings.sending = mail::send_by::keep;
    site.set(site.settings);
    delivery::wake();
    const int taken = sink.taken(); // one more may be in hand, and one more on its way to being told
    QTRY_VERIFY(!delivery::present().busy);
    QVERIFY2(sink.taken() <= taken + 2, qPrintable(QString("%1 after %2").arg(sink.taken()).arg(taken)));
    QCOMPARE(outbox::count().waiting, 300 - sink.taken());
    QCOMPARE(outbox::count().unknown, 0);
    QVERIFY(delivery::present().line.endsWith(": sending is switched off"));
}

void delivery_test::a_corrected_password_does_not_wait()
{
    smtp_sink sink({.user = "smith", .password = "right", .delay = std::chrono::milliseconds(100)});
    delivery_site site(sink.port());
    site.hand_over("ann@example.net");
    outbox::sending_order order;
    order.settings = site.settings;
    order.settings.smtp_logs_in = true;
    order.settings.smtp.user = "smith";
    order.password = "wrong";
    outbox::delivery_worker worker(std::make_shared<outbox::outbox_shelf>(site.path("outbox")), [] {});
    worker.take(order);
    QTRY_COMPARE(sink.connections(), 1); // it is refused within the next tenths of a second
    order.password = "right";
    worker.take(order);
    QTRY_COMPARE_WITH_TIMEOUT(sink.taken(), 1, 15000); // it would be tried again after 30 seconds
}

void delivery_test::a_mail_whose_file_cannot_be_read_stays_data()
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
void delivery_test::a_mail_whose_file_cannot_be_read_stays()
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

void delivery_test::a_server_that_wants_a_login_refuses_no_mail_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::newRow("a login") << QByteArray("530 5.7.0 Authentication required");
    QTest::newRow("another login") << QByteArray("535 5.7.8 Bad credentials");
    QTest::newRow("an encrypted login") << QByteArray("538 5.7.11 Encryption required");
}
void delivery_test::a_server_that_wants_a_login_refuses_no_mail()
{
    QFETCH(QByteArray, reply);
    smtp_sink sink({.refusals = {{.pattern = "*", .reply = reply, .sender = true}}});
    delivery_site site(sink.port());
    site.hand_over("ann@example.net");
    site.hand_over("bob@example.net");
    const QString failure = site.deliver();
    QVERIFY2(failure.contains(" takes no mail without a login. It said: " + QString::fromLatin1(reply)),
             qPrintable(failure));
    QCOMPARE(waiting_addresses(), (QStringList{"ann@example.net", "bob@example.net"}));
    QCOMPARE(sink.connections(), 1);
}

void delivery_test::the_words_of_a_break_are_not_those_of_a_refusal()
{
    smtp_sink sink({.faults = {{.at = smtp_step::final, .deed = smtp_fault::close, .times = -1}},
                    .refusals = {{"ann@*", "550 5.1.1 No such user"}}});
    delivery_site site(sink.port());
    site.hand_over("ann@example.net; bob@example.net");
    const QString failure = site.deliver();
    QVERIFY2(failure.contains("closed the connection"), qPrintable(failure));
    QVERIFY2(!failure.contains("No such user"), qPrintable(failure));
}

void delivery_test::sendmail_is_found_in_the_search_path()
{
    const fake_sendmail program;
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", QFileInfo(program.program()).path().toLocal8Bit() + ':' + path);
    delivery_site site;
    site.settings.sending = mail::send_by::sendmail;
    site.set(site.settings);
    site.hand_over("ann@example.net");
    const QString failure = site.deliver();
    qputenv("PATH", path);
    QCOMPARE(failure, "");
    QCOMPARE(program.calls().size(), 1);
    QVERIFY(outbox::contents().empty());
}

void delivery_test::singles_overtake_mailings()
{
    smtp_sink sink({.delay = std::chrono::milliseconds(2)});
    delivery_site site(sink.port());
    site.hand_over_many(200);
    delivery::start([](const delivery::report &) {});
    QTRY_VERIFY(sink.taken() > 5);
    site.hand_over("ann@example.net");
    const int taken = sink.taken(); // one more may be in hand
    QTRY_COMPARE_WITH_TIMEOUT(sink.taken(), 201, 20000);
    const auto mails = sink.mails();
    int place = 0;
    while (mails.at(place).recipients != QByteArrayList{"ann@example.net"})
        ++place;
    QVERIFY2(place <= taken + 1, qPrintable(QString("%1 after %2").arg(place).arg(taken)));
}

void delivery_test::closing_in_the_middle_leaves_the_rest()
{
    smtp_sink sink({.delay = std::chrono::milliseconds(2)});
    delivery_site site(sink.port());
    site.hand_over_many(300);
    delivery::start([](const delivery::report &) {});
    QTRY_VERIFY(sink.taken() > 5);
    delivery::stop();
    const int taken = sink.taken();
    QVERIFY(taken < 300);
    QCOMPARE(outbox::count().waiting, 300 - taken);
    QCOMPARE(outbox::count().unknown, 0);
    QVERIFY(!site.outbox_files().contains("sending.journal"));
    site.begin_a_new_run();
    QCOMPARE(site.deliver(), "");
    QCOMPARE(sink.taken(), 300);
}

void delivery_test::a_stalled_server_does_not_hold_up_closing()
{
    smtp_sink sink({.faults = {{.at = smtp_step::mail, .deed = smtp_fault::stall}}});
    delivery_site site(sink.port());
    site.hand_over("ann@example.net");
    delivery::start([](const delivery::report &) {});
    QTRY_VERIFY(sink.connections() > 0);
    QElapsedTimer timer;
    timer.start();
    delivery::stop();
    QVERIFY2(timer.elapsed() < 3000, qPrintable(QString::number(timer.elapsed())));
    QCOMPARE(waiting_addresses(), QStringList{"ann@example.net"});
}

void delivery_test::two_thousand_mails()
{
    smtp_sink sink;
    delivery_site site(sink.port());
    site.hand_over_many(2000);
    QCOMPARE(outbox::count().waiting, 2000);
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(site.deliver(), "");
    qInfo("2000 mails in %lld ms", timer.elapsed());
    QCOMPARE(sink.taken(), 2000);
    QCOMPARE(site.outbox_files(), QStringList());
}

QTEST_GUILESS_MAIN(delivery_test)
#include "delivery_test.moc"
