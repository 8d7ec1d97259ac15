// What the delivery decides by itself: when to try again, how many mailings an hour, what to say; and the road by
// sendmail. The whole of it with a server: delivery_test.cpp.
#include "platform/real/outbox/delivery_line.h"
#include "platform/real/outbox/mailing_rate.h"
#include "platform/real/outbox/retry_plan.h"
#include "platform/real/outbox/sendmail_road.h"
#include "support/fake_sendmail.h"
#include <QFile>
#include <QTest>

using namespace outbox;

class delivery_plan_test : public QObject {
    Q_OBJECT
private slots:

    void the_server_is_tried_again_ever_later()
    {
        QList<int> seconds;
        for (int failures = 1; failures <= 8; ++failures)
            seconds += seconds_until_reconnecting(failures);
        QCOMPARE(seconds, (QList<int>{30, 60, 120, 300, 600, 1200, 1800, 1800}));
    }

    void a_postponed_mail_is_refused_after_three_days()
    {
        constexpr qint64 begin = 1767268800;
        record mail;
        mail.left = {{"ann@example.net", recipient_state::waiting, "450 Later"}};
        QList<qint64> minutes;
        qint64 moment = begin;
        int tries = 0;
        for (; state_of(mail) == mail_state::waiting && tries < 100; ++tries) {
            note_postponed(mail, moment);
            minutes += (mail.next_try - moment) / 60;
            moment = mail.next_try;
        }
        QCOMPARE(minutes.first(5), (QList<qint64>{5, 15, 60, 240, 240}));
        QCOMPARE(state_of(mail), mail_state::refused);
        QCOMPARE(mail.left.front().words, "Tried for three days. 450 Later");
        // 80 minutes, then every four hours: the 18th of these is the first one behind 72 hours
        QCOMPARE(tries, 4 + 18);
    }

    void the_limit_lets_a_sixth_go_at_once_and_the_rest_evenly()
    {
        const QTemporaryDir folder;
        mailing_rate rate(folder.path(), 450);
        qint64 moment = 1767268800;
        QCOMPARE(rate.allowed(moment), 75);
        for (int number = 0; number < 75; ++number)
            rate.note_one(moment);
        QCOMPARE(rate.allowed(moment), 0);
        QCOMPARE(rate.next_moment(moment), moment + 8);
        QCOMPARE(rate.allowed(moment + 7), 0);
        QCOMPARE(rate.allowed(moment + 8), 1);
        QCOMPARE(mailing_rate(folder.path(), 450).allowed(moment + 8), 1); // a restart
        QCOMPARE(rate.allowed(moment - 100000), 1);                        // a clock that is set back gives none
        QCOMPARE(rate.allowed(moment + 100000), 75);
    }

    void no_limit()
    {
        const QTemporaryDir folder;
        mailing_rate rate(folder.path(), 0);
        rate.note_one(1);
        QVERIFY(rate.allowed(1) > 1000000);
        QVERIFY(!QFile::exists(folder.filePath("mailings.rate")));
    }

    void the_status_line_data()
    {
        QTest::addColumn<delivery_facts>("facts");
        QTest::addColumn<QString>("line");
        QTest::newRow("nothing") << delivery_facts{} << "";
        QTest::newRow("one waits") << delivery_facts{.left = {.waiting = 1}} << "1 mail waits in the Outbox";
        QTest::newRow("three wait") << delivery_facts{.left = {.waiting = 3}} << "3 mails wait in the Outbox";
        QTest::newRow("nothing is to go out") << delivery_facts{.left = {.waiting = 3}, .keeps_all = true}
                                              << "3 mails wait in the Outbox: sending is switched off";
        QTest::newRow("the way is closed")
            << delivery_facts{.left = {.waiting = 3},
                              .failure = "mail.example.org cannot be reached.",
                              .next_try = "2:05:00 PM"}
            << "3 mails wait in the Outbox: mail.example.org cannot be reached: tried again at 2:05:00 PM";
        QTest::newRow("nothing waits, and the server is away")
            << delivery_facts{.left = {}, .failure = "Nobody answers."} << "";
        QTest::newRow("nothing waits, and files cannot be removed")
            << delivery_facts{.left = {}, .failure = "Permission denied: /outbox", .of_disk = true}
            << "The Outbox cannot be tidied: Permission denied: /outbox";
        QTest::newRow("it sends") << delivery_facts{.left = {.waiting = 3}, .busy = true, .failure = "old"}
                                  << "3 mails wait in the Outbox: sending";
        QTest::newRow("refused and in doubt") << delivery_facts{.left = {.refused = 1, .unknown = 1}}
                                              << "1 mail was refused; 1 mail may or may not have gone";
        QTest::newRow("several of each")
            << delivery_facts{.left = {.held = 2, .refused = 2, .unknown = 2}}
            << "2 answers are held; 2 mails were refused; 2 mails may or may not have gone";
    }
    void the_status_line()
    {
        QFETCH(delivery_facts, facts);
        QTEST(delivery_line(facts), "line");
    }

    void what_holds_up_the_mails_that_wait_data()
    {
        QTest::addColumn<delivery_facts>("facts");
        QTest::addColumn<QString>("words");
        const delivery_facts closed{
            .left = {.waiting = 3}, .failure = "Nobody answers at mail.example.org.", .next_try = "2:05:00 PM"};
        delivery_facts tries = closed, off = closed, no_time = closed;
        tries.busy = true;
        off.keeps_all = true;
        no_time.next_try = "";
        QTest::newRow("nothing") << delivery_facts{.left = {.waiting = 3}} << "";
        QTest::newRow("the way is closed")
            << closed << "Nobody answers at mail.example.org. It is tried again at 2:05:00 PM.";
        QTest::newRow("it is just tried again") << tries << "";
        QTest::newRow("sending is off") << off << "";
        QTest::newRow("nobody tries again") << no_time << "Nobody answers at mail.example.org.";
    }
    void what_holds_up_the_mails_that_wait()
    {
        QFETCH(delivery_facts, facts);
        QTEST(trouble_words(facts), "words");
    }

    void sendmail_is_told_who_and_fed_the_mail()
    {
        const fake_sendmail program;
        const net::patience patience;
        bool was_called_before = true;
        const auto outcome =
            sendmail_road(program.program(), patience)
                .send(
                    {"orders@example.org", {"ann@example.net", "-bob@bücher.example"}, "To: x\r\n\r\n.\r\n$(id)\r\n"},
                    [&] { was_called_before = !program.calls().isEmpty(); }, nullptr);
        QVERIFY(!was_called_before);
        QCOMPARE(program.calls().size(), 1);
        QCOMPARE(program.calls().at(0).arguments, (QStringList{"-i", "-f", "orders@example.org", "--",
                                                               "ann@example.net", "-bob@xn--bcher-kva.example"}));
        QCOMPARE(program.calls().at(0).bytes, "To: x\n\n.\n$(id)\n");
        QCOMPARE(outcome.recipients.size(), size_t(2));
        QVERIFY(outcome.recipients[1].became == smtp::fate::sent);
    }

    void what_sendmail_says_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<int>("fate");
        QTest::newRow("no such user") << 67 << int(smtp::fate::refused);
        QTest::newRow("try again") << 75 << int(smtp::fate::later);
        QTest::newRow("something else") << 1 << int(smtp::fate::later);
    }
    void what_sendmail_says()
    {
        QFETCH(int, status);
        const fake_sendmail program(status, "no room\n");
        const net::patience patience;
        const auto outcome = sendmail_road(program.program(), patience)
                                 .send(
                                     {"a@b.c", {"ann@example.net"}, "x\r\n"}, [] {}, nullptr);
        QTEST(int(outcome.recipients.at(0).became), "fate");
        QCOMPARE(outcome.recipients.at(0).words,
                 QString("sendmail ended with status %1. It said: no room").arg(status));
    }

    void a_sendmail_that_does_not_end_leaves_doubt()
    {
        const QTemporaryDir folder;
        QFile script(folder.filePath("sendmail"));
        QVERIFY(script.open(QIODevice::WriteOnly));
        script.write("#!/bin/sh\nexec sleep 60\n");
        script.close();
        QVERIFY(script.setPermissions(QFile::ReadOwner | QFile::ExeOwner));
        net::patience patience;
        patience.answer_ms = 300;
        const auto outcome = sendmail_road(script.fileName(), patience)
                                 .send(
                                     {"a@b.c", {"ann@example.net"}, "x\r\n"}, [] {}, nullptr);
        QVERIFY(outcome.recipients.at(0).became == smtp::fate::unknown);
    }

    void no_sendmail_on_the_machine()
    {
        const net::patience patience;
        bool told = false;
        try {
            sendmail_road("/nowhere/sendmail", patience)
                .send(
                    {"a@b.c", {"ann@example.net"}, "x\r\n"}, [] {}, nullptr);
        } catch (const run_time_error &error) {
            told = error.description == "There is no /nowhere/sendmail on this machine.";
        }
        QVERIFY(told);
    }
};

QTEST_GUILESS_MAIN(delivery_plan_test)
#include "delivery_plan_test.moc"
