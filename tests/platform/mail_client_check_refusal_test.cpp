// The check of the settings where a server says no for another reason than the password, the folder that it makes, and
// giving up on a thread of its own. The rest: mail_client_check_test.cpp.
#include "support/dovecot.h"
#include "support/heard_steps.h"
#include "support/scripted_server.h"
#include "support/smtp_sink.h"
#include <QElapsedTimer>
#include <QFile>
#include <QTest>
#include <atomic>
#include <thread>

using mail::check_state;
using mail::client_kind;

namespace {

mail::check_request ann_at(client_kind kind, int port)
{
    mail::check_request request;
    request.settings.kind = kind;
    request.settings.incoming = {"127.0.0.1", port, mail::security::none, "ann"};
    request.password = "apple tree";
    return request;
}

mail::check_request sending_at(int port)
{
    mail::check_request request;
    request.settings.kind = client_kind::mbox;
    request.settings.sending = mail::send_by::smtp;
    request.settings.smtp = {"127.0.0.1", port, mail::security::none, "ann"};
    request.settings.from = "shop@example.org";
    request.smtp_password = "apple tree";
    return request;
}

script imap_until_logged_in()
{
    using namespace scripted;
    return {say("* OK hi\r\n"), expect("%t CAPABILITY"), say("* CAPABILITY IMAP4rev1 AUTH=PLAIN SASL-IR\r\n%t OK\r\n"),
            expect("%t AUTHENTICATE PLAIN")};
}

script pop3_until_logged_in()
{
    using namespace scripted;
    return {say("+OK hi\r\n"),    expect("CAPA"), say("+OK\r\nSASL PLAIN\r\n.\r\n"),
            expect("AUTH PLAIN"), say("+ \r\n"),  expect("")};
}

}

class mail_client_check_refusal_test : public QObject {
    Q_OBJECT
private slots:

    void a_mailbox_that_lets_nobody_in_now_data()
    {
        QTest::addColumn<client_kind>("kind");
        QTest::addColumn<script>("says");
        QTest::addColumn<QString>("step");
        using namespace scripted;
        QTest::newRow("IMAP, at once") << client_kind::imap << script{say("* BYE Too busy\r\n"), hang_up()}
                                       << "Mail server";
        QTest::newRow("IMAP, at the login")
            << client_kind::imap
            << imap_until_logged_in() + script{say("%t NO [UNAVAILABLE] Too busy\r\n"), wait_for_end()} << "Signing in";
        QTest::newRow("POP3, at once") << client_kind::pop3 << script{say("-ERR Too busy\r\n"), hang_up()}
                                       << "Mail server";
        QTest::newRow("POP3, at the login")
            << client_kind::pop3 << pop3_until_logged_in() + script{say("-ERR [SYS/TEMP] Too busy\r\n"), wait_for_end()}
            << "Signing in";
    }
    void a_mailbox_that_lets_nobody_in_now()
    {
        QFETCH(client_kind, kind);
        QFETCH(script, says);
        QFETCH(QString, step);
        scripted_server server(says);
        const heard_steps heard(ann_at(kind, server.port));
        QVERIFY2(heard.state(step) == check_state::failed, qPrintable(heard.text()));
        QVERIFY2(heard.words(step).contains("Too busy"), qPrintable(heard.text()));
        QVERIFY2(heard.words(step).contains("Try again"), qPrintable(heard.text()));
        QVERIFY2(!heard.text().contains("password"), qPrintable(heard.text()));
        QVERIFY(!heard.outcome.receives && !heard.outcome.cancelled);
    }

    void a_sending_server_that_lets_nobody_in_now_data()
    {
        QTest::addColumn<smtp_step>("at");
        QTest::addColumn<QByteArray>("says");
        QTest::addColumn<QString>("step");
        QTest::newRow("at once") << smtp_step::connect << QByteArray("421 4.3.2 Too busy") << "Sending server";
        QTest::newRow("at the login") << smtp_step::auth << QByteArray("454 4.7.0 Too busy") << "Signing in to send";
    }
    void a_sending_server_that_lets_nobody_in_now()
    {
        QFETCH(smtp_step, at);
        QFETCH(QByteArray, says);
        QFETCH(QString, step);
        smtp_options options;
        options.user = "ann";
        options.password = "apple tree";
        smtp_fault busy{at, smtp_fault::answer, says};
        busy.times = -1;
        options.faults = {busy};
        const smtp_sink sink(options);
        const heard_steps heard(sending_at(sink.port()));
        QVERIFY2(heard.state(step) == check_state::failed, qPrintable(heard.text()));
        QVERIFY2(heard.words(step).contains("Too busy"), qPrintable(heard.text()));
        QVERIFY2(heard.words(step).contains("Try again"), qPrintable(heard.text()));
        QVERIFY2(!heard.text().contains("password"), qPrintable(heard.text()));
        QVERIFY(!heard.outcome.sends);
    }

    void an_inbox_that_is_refused_data()
    {
        QTest::addColumn<client_kind>("kind");
        QTest::addColumn<script>("says");
        using namespace scripted;
        QTest::newRow("IMAP") << client_kind::imap
                              << imap_until_logged_in() + script{say("%t OK\r\n"), expect("%t EXAMINE"),
                                                                 say("%t NO [INUSE] It is repaired\r\n"),
                                                                 wait_for_end()};
        QTest::newRow("POP3") << client_kind::pop3
                              << pop3_until_logged_in() + script{say("+OK\r\n"), expect("STAT"),
                                                                 say("-ERR It is repaired\r\n"), wait_for_end()};
    }
    void an_inbox_that_is_refused()
    {
        QFETCH(client_kind, kind);
        QFETCH(script, says);
        scripted_server server(says);
        const heard_steps heard(ann_at(kind, server.port));
        QVERIFY2(heard.state("Signing in") == check_state::good, qPrintable(heard.text()));
        QVERIFY2(heard.state("Inbox") == check_state::failed, qPrintable(heard.text()));
        QVERIFY2(heard.words("Inbox").contains("It is repaired"), qPrintable(heard.text()));
        QVERIFY(!heard.outcome.receives);
        QCOMPARE(server.unexpected(), QByteArray());
    }

    // As a fetch makes it: other programs show it, too.
    void the_folder_that_is_made_is_subscribed()
    {
        dovecot_server server;
        const heard_steps heard(ann_at(client_kind::imap, server.imap_port));
        QVERIFY2(heard.outcome.receives, qPrintable(heard.text()));
        QFile subscribed(server.maildir("ann") + "/subscriptions");
        QVERIFY(subscribed.open(QFile::ReadOnly));
        QVERIFY(subscribed.readAll().contains("Tessaly_Inbox"));
    }

    void giving_up_while_a_step_is_not_answered_data()
    {
        QTest::addColumn<client_kind>("kind");
        QTest::addColumn<script>("says");
        QTest::addColumn<QByteArray>("unanswered");
        using namespace scripted;
        const script imap = imap_until_logged_in() + script{say("%t OK\r\n"), expect("%t EXAMINE")};
        QTest::newRow("IMAP, Inbox") << client_kind::imap << imap + script{wait_for_end()} << QByteArray("EXAMINE");
        QTest::newRow("IMAP, folder") << client_kind::imap << imap + script{say("%t OK\r\n"), wait_for_end()}
                                      << QByteArray("LIST");
        const script pop3 = pop3_until_logged_in() + script{say("+OK\r\n"), expect("STAT")};
        QTest::newRow("POP3, Inbox") << client_kind::pop3 << pop3 + script{wait_for_end()} << QByteArray("STAT");
        QTest::newRow("POP3, names") << client_kind::pop3 << pop3 + script{say("+OK 1 9\r\n"), wait_for_end()}
                                     << QByteArray("UIDL");
    }
    void giving_up_while_a_step_is_not_answered()
    {
        QFETCH(client_kind, kind);
        QFETCH(script, says);
        QFETCH(QByteArray, unanswered);
        scripted_server server(says);
        std::atomic<bool> wanted = true;
        QElapsedTimer since_given_up;
        net::patience patience;
        patience.give_up = [&wanted] { return !wanted; };
        mail::check_outcome outcome;
        std::thread worker([&] { // as the page does: what is in force on this thread holds there no more
            outcome = mail::check_mail_client(ann_at(kind, server.port), patience, [](const mail::check_line &) {});
        });
        const bool came_there = QTest::qWaitFor([&] { return server.received().contains(unanswered); }, 20000);
        since_given_up.start();
        wanted = false;
        worker.join();
        const qint64 ms = since_given_up.elapsed();
        QVERIFY(came_there);
        QVERIFY(outcome.cancelled);
        QVERIFY2(ms < 1000, qPrintable(QString::number(ms)));
        QCOMPARE(server.unexpected(), QByteArray());
    }
};

QTEST_GUILESS_MAIN(mail_client_check_refusal_test)
#include "mail_client_check_refusal_test.moc"
