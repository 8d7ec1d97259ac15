// From the Outbox to a server: what went, what is left, and why. Where it fails: delivery_trouble_test.cpp; the thread
// that does it: delivery_worker_test.cpp; killed on the way: delivery_kill_test.cpp.
#include "support/delivery_site.h"
#include "support/fake_sendmail.h"
#include "support/smtp_sink.h"
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QTest>

using outbox::mail_state;

class delivery_test : public QObject {
    Q_OBJECT
private slots:
    void what_waits_goes_out_in_its_order_over_one_connection();
    void nothing_goes_out_where_nothing_is_set();
    void several_recipients_and_what_is_left_data();
    void several_recipients_and_what_is_left();
    void a_refused_mail_keeps_the_words_and_can_be_sent_again();
    void a_mail_without_an_account_data();
    void a_mail_without_an_account();
    void the_hours_limit_holds_mailings_only();
    void sendmail_is_found_in_the_search_path();
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
