// The thread that empties the Outbox: when it looks, what overtakes, and how it ends.
#include "platform/real/outbox/delivery_worker.h"
#include "support/delivery_site.h"
#include "support/smtp_sink.h"
#include <QElapsedTimer>
#include <QTest>
#include <QThread>

class delivery_worker_test : public QObject {
    Q_OBJECT
private slots:
    void the_worker_sends_what_is_handed_over();
    void the_worker_tries_again_when_it_is_told_that_settings_changed();
    void send_now_takes_also_what_the_server_wanted_later();
    void what_send_now_made_due_stays_due_when_the_way_closes();
    void switching_sending_off_is_heeded_between_two_mails();
    void a_corrected_password_does_not_wait();
    void singles_overtake_mailings();
    void closing_in_the_middle_leaves_the_rest();
    void a_stalled_server_does_not_hold_up_closing();
};

void delivery_worker_test::the_worker_sends_what_is_handed_over()
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

void delivery_worker_test::the_worker_tries_again_when_it_is_told_that_settings_changed()
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

void delivery_worker_test::send_now_takes_also_what_the_server_wanted_later()
{
    smtp_sink sink({.faults = {{.at = smtp_step::rcpt, .deed = smtp_fault::answer, .text = "450 4.2.0 Greylisted"}}});
    delivery_site site(sink.port());
    site.hand_over("ann@example.net");
    delivery::start([](const delivery::report &) {});
    QTRY_VERIFY(only_mail().next_try.isValid());
    QVERIFY(only_mail().reason.contains("Greylisted"));
    QTRY_VERIFY(!delivery::present().busy);
    site.hand_over("bob@example.net"); // takes nothing with it that was to come later
    QTRY_COMPARE(sink.taken(), 1);
    QCOMPARE(waiting_addresses(), QStringList{"ann@example.net"});
    delivery::send_now();
    QTRY_COMPARE(sink.taken(), 2);
    QTRY_COMPARE(outbox::contents().size(), size_t(0));
}

void delivery_worker_test::what_send_now_made_due_stays_due_when_the_way_closes()
{
    smtp_sink sink({.faults = {{.at = smtp_step::rcpt, .deed = smtp_fault::answer, .text = "450 4.2.0 Greylisted"}}});
    delivery_site site(sink.port());
    site.hand_over("ann@example.net");
    delivery::start([](const delivery::report &) {});
    QTRY_VERIFY(only_mail().next_try.isValid());
    QTRY_VERIFY(!delivery::present().busy);
    sink.stop();
    delivery::send_now();
    QTRY_VERIFY2(delivery::present().trouble.contains("It is tried again at "), "the server is away");
    QVERIFY(!only_mail().next_try.isValid());
    sink.start();
    delivery::wake(); // a new try at the way, and the mail does not wait for its own any more
    QTRY_COMPARE(sink.taken(), 1);
}

void delivery_worker_test::switching_sending_off_is_heeded_between_two_mails()
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

void delivery_worker_test::a_corrected_password_does_not_wait()
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

void delivery_worker_test::singles_overtake_mailings()
{
    smtp_sink sink({.delay = std::chrono::milliseconds(2)});
    delivery_site site(sink.port());
    site.hand_over_many(200);
    delivery::start([](const delivery::report &) {});
    QTRY_VERIFY(sink.taken() > 5);
    site.hand_over("ann@example.net");
    const int taken = sink.taken(); // one more may be in hand, and the next one asked for
    QTRY_COMPARE_WITH_TIMEOUT(sink.taken(), 201, 20000);
    const auto mails = sink.mails();
    int place = 0;
    while (mails.at(place).recipients != QByteArrayList{"ann@example.net"})
        ++place;
    QVERIFY2(place <= taken + 2, qPrintable(QString("%1 after %2").arg(place).arg(taken)));
}

void delivery_worker_test::closing_in_the_middle_leaves_the_rest()
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

void delivery_worker_test::a_stalled_server_does_not_hold_up_closing()
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

QTEST_GUILESS_MAIN(delivery_worker_test)
#include "delivery_worker_test.moc"
