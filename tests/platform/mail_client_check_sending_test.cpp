// The check of the settings against real servers: sending, the guesses of a provider, and giving up. The mailbox:
// mail_client_check_test.cpp.
#include "platform/app_folder.h"
#include "platform/mail_client_check.h"
#include "support/check_requests.h"
#include "support/loopback.h"
#include "support/scripted_server.h"
#include "support/wire_proxy.h"
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class mail_client_check_sending_test : public QObject {
    Q_OBJECT
private slots:

    void sending_that_works_data()
    {
        QTest::addColumn<security>("secured");
        QTest::newRow("without encryption") << security::none;
        QTest::newRow("by STARTTLS") << security::starttls;
        QTest::newRow("by TLS") << security::tls;
    }
    void sending_that_works()
    {
        QFETCH(security, secured);
        smtp_options options = with_login();
        if (secured != security::none)
            options.certificate = made().good();
        options.tls_at_once = secured == security::tls;
        const smtp_sink sink(options);
        const heard_steps heard(sending_at(sink, secured));
        QVERIFY2(heard.outcome.sends, qPrintable(heard.text()));
        SAYS(heard, "Sending server", check_state::good, "answers");
        SAYS(heard, "Signing in to send", check_state::good, "ann");
        SAYS(heard, "Sending address", check_state::good, "shop@example.org", "Nothing was sent");
        QCOMPARE(sink.taken(), 0);
        QCOMPARE(sink.complaints(), QByteArrayList());
    }

    void sending_signs_in_as_the_mailbox_does()
    {
        dovecot_server server;
        const smtp_sink sink(with_login());
        mail::check_request request = ann_at(client_kind::imap, security::none, server);
        request.settings.sending = mail::send_by::smtp;
        request.settings.smtp = {"127.0.0.1", sink.port(), security::none, ""};
        request.settings.from = "shop@example.org";
        const heard_steps heard(request);
        QVERIFY2(heard.outcome.receives && heard.outcome.sends, qPrintable(heard.text()));
        QCOMPARE(heard.outcome.found.smtp.user, "");
        QCOMPARE(heard.outcome.found.incoming.user, "ann");
    }

    void sending_with_a_token()
    {
        smtp_options options = with_login();
        options.token = "token-of-ann";
        const smtp_sink sink(options);
        mail::check_request request = sending_at(sink, security::none);
        request.settings.use_token = true;
        request.smtp_password = "token-of-ann";
        const heard_steps typed(request);
        QVERIFY2(typed.outcome.sends, qPrintable(typed.text()));
        request.smtp_password.clear();
        request.settings.token_command = "printf '%s' token-of-ann";
        const heard_steps fetched(request);
        QVERIFY2(fetched.outcome.sends, qPrintable(fetched.text()));
        SAYS(fetched, "Access token", check_state::good, "command");
    }

    void sending_without_a_login()
    {
        const smtp_sink sink;
        mail::check_request request = sending_at(sink, security::none);
        request.settings.smtp_logs_in = false;
        const heard_steps heard(request);
        QVERIFY2(heard.outcome.sends, qPrintable(heard.text()));
        QVERIFY(heard.state("Signing in to send") == check_state::skipped);
    }

    void a_wrong_password_to_send()
    {
        const smtp_sink sink(with_login());
        mail::check_request request = sending_at(sink, security::none);
        request.smtp_password = "WRONG-word";
        const heard_steps heard(request);
        SAYS(heard, "Signing in to send", check_state::failed, "user name and password");
        QVERIFY(!heard.outcome.sends);
        QVERIFY(!heard.text().contains("WRONG-word"));
    }

    void an_address_that_the_server_does_not_send_as_data()
    {
        QTest::addColumn<bool>("at_sender");
        QTest::newRow("said at once") << true;
        QTest::newRow("said at the recipient") << false;
    }
    void an_address_that_the_server_does_not_send_as()
    {
        QFETCH(bool, at_sender);
        smtp_options options = with_login();
        options.refusals = {{"shop@*", "553 5.7.1 Sender address rejected: not owned by user", at_sender}};
        const smtp_sink sink(options);
        const heard_steps heard(sending_at(sink, security::none));
        SAYS(heard, "Sending address", check_state::failed, "refuses to send as this address", "shop@example.org",
             "not owned by user");
        QVERIFY(!heard.outcome.sends);
    }

    void a_server_that_wants_to_be_asked_later()
    {
        smtp_options options = with_login();
        options.refusals = {{"shop@*", "450 4.2.0 Greylisted"}};
        const smtp_sink sink(options);
        const heard_steps heard(sending_at(sink, security::none));
        SAYS(heard, "Sending address", check_state::warning, "at this moment", "Greylisted");
        QVERIFY(heard.outcome.sends);
    }

    void an_address_that_adds_a_command()
    {
        const smtp_sink sink(with_login());
        mail::check_request request = sending_at(sink, security::none);
        request.settings.from = "shop@example.org>\r\nDATA";
        SAYS(heard_steps(request), "Sending address", check_state::failed, "cannot be used");
        QCOMPARE(sink.complaints(), QByteArrayList());
    }

    void guesses_are_tried_in_their_order()
    {
        dovecot_options options;
        options.certificate = made().good();
        dovecot_server server(options);
        smtp_options sending = with_login();
        sending.user = "ann";
        sending.certificate = made().good();
        const smtp_sink sink(sending);
        const QTemporaryDir folder;
        QFile list(folder.filePath("mail_providers.tsv"));
        QVERIFY(list.open(QFile::WriteOnly));
        const QString wrong = QString::number(free_loopback_port());
        list.write(QString("shop.test\tThe Shop\t127.0.0.1 %1 tls\t-\t127.0.0.1 %1 tls\tlocal\tIts note.\n"
                           "shop.test\tThe Shop\t127.0.0.1 %2 tls\t-\t127.0.0.1 %3 starttls\tlocal\tIts note.\n")
                       .arg(wrong, QString::number(server.imaps_port), QString::number(sink.port()))
                       .toUtf8());
        list.close();
        set_app_folder(folder.path());
        mail::check_request request;
        request.settings.kind = client_kind::imap;
        request.settings.sending = mail::send_by::smtp;
        request.settings.authority_file = made().authority();
        request.password = "apple tree";
        request.address = "ann@shop.test";
        const heard_steps heard(request);
        request.password = "WRONG-word";
        const heard_steps refused(request);
        set_app_folder({});
        QVERIFY2(heard.outcome.receives && heard.outcome.sends, qPrintable(heard.text()));
        QCOMPARE(heard.outcome.found.incoming.host, "127.0.0.1");
        QCOMPARE(heard.outcome.found.incoming.port, int(server.imaps_port));
        QCOMPARE(heard.outcome.found.incoming.user, "ann");
        QCOMPARE(heard.outcome.found.smtp.port, int(sink.port()));
        QVERIFY(heard.outcome.found.smtp.secured == security::starttls);
        SAYS(refused, "Signing in", check_state::failed, "Its note.");
    }

    void a_typed_host_is_the_only_one_tried()
    {
        dovecot_options options;
        options.certificate = made().good();
        dovecot_server server(options);
        const QTemporaryDir folder;
        QFile list(folder.filePath("mail_providers.tsv"));
        QVERIFY(list.open(QFile::WriteOnly));
        list.write("shop.test\tThe Shop\t127.0.0.1 " + QByteArray::number(server.imaps_port) +
                   " tls\t-\t-\tlocal\t-\n");
        list.close();
        set_app_folder(folder.path());
        mail::check_request request = imap_at("127.0.0.1", free_loopback_port(), security::tls);
        request.address = "ann@shop.test";
        const heard_steps heard(request);
        set_app_folder({});
        QVERIFY2(!heard.outcome.receives, qPrintable(heard.text()));
    }

    void no_guess_answers()
    {
        mail::check_request request = imap_at("", 0, security::tls);
        request.address = "ann@no-such-place.invalid";
        SAYS(heard_steps(request), "Mail server", check_state::failed, "No server was found for",
             "imap.no-such-place.invalid, mail.no-such-place.invalid, no-such-place.invalid", "Type the server's name");
    }

    void a_server_that_says_nothing()
    {
        scripted_server silent(script{scripted::wait_for_end()});
        for (const security secured : {security::none, security::tls}) {
            net::patience patience;
            patience.connect_ms = 500;
            const heard_steps heard(imap_at("127.0.0.1", silent.port, secured), patience);
            SAYS(heard, "Mail server", check_state::failed, "does not answer", "firewall");
        }
    }

    void giving_up_while_a_server_says_nothing()
    {
        scripted_server silent(script{scripted::wait_for_end()});
        for (const security secured : {security::none, security::tls}) {
            QElapsedTimer since;
            since.start();
            net::patience patience;
            patience.give_up = [&since] { return since.elapsed() > 100; };
            const heard_steps heard(imap_at("127.0.0.1", silent.port, secured), patience);
            QVERIFY(heard.outcome.cancelled);
            QVERIFY2(since.elapsed() < 1100 + 400, qPrintable(QString::number(since.elapsed())));
            SAYS(heard, "Mail server", check_state::skipped, "Cancelled.");
        }
    }

    // Given up as soon as any step begins: nothing follows it.
    void giving_up_at_every_step()
    {
        dovecot_server server;
        const smtp_sink sink(with_login());
        mail::check_request request = ann_at(client_kind::imap, security::none, server);
        request.settings.sending = mail::send_by::smtp;
        request.settings.smtp = {"127.0.0.1", sink.port(), security::none, "ann"};
        request.settings.from = "shop@example.org";
        const heard_steps whole(request);
        QVERIFY2(whole.outcome.receives && whole.outcome.sends, qPrintable(whole.text()));
        const QStringList steps = whole.steps();
        QVERIFY(steps.size() >= 8);
        for (const QString &step : steps) {
            const heard_steps heard(request, {}, step);
            QVERIFY2(heard.outcome.cancelled, qPrintable(step));
            QCOMPARE(heard.steps().last(), step);
            QVERIFY2(heard.ms < 1000, qPrintable(step));
        }
    }
};

QTEST_GUILESS_MAIN(mail_client_check_sending_test)
#include "mail_client_check_sending_test.moc"
