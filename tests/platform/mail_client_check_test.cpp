// The check of the settings against real servers: the good roads, every failure by its words, and giving up.
// Mail on this machine: mail_client_check_local_test.cpp.
#include "platform/app_folder.h"
#include "platform/mail_client_check.h"
#include "support/dovecot.h"
#include "support/heard_steps.h"
#include "support/loopback.h"
#include "support/scripted_server.h"
#include "support/smtp_sink.h"
#include "support/wire_proxy.h"
#include <QElapsedTimer>
#include <QFile>
#include <QTest>

using mail::check_state;
using mail::client_kind;
using mail::security;

Q_DECLARE_METATYPE(mail::client_kind)
Q_DECLARE_METATYPE(mail::security)

namespace {

const certificates &made()
{
    static const certificates all;
    return all;
}

mail::check_request ann_at(client_kind kind, security secured, const dovecot_server &server)
{
    mail::check_request request;
    request.settings.configured = true;
    request.settings.kind = kind;
    const bool tls = secured == security::tls;
    const bool imap = kind == client_kind::imap;
    const int port = imap ? (tls ? server.imaps_port : server.imap_port) : (tls ? server.pop3s_port : server.pop3_port);
    request.settings.incoming = {server.host(), port, secured, "ann"};
    request.settings.authority_file = made().authority();
    request.password = "apple tree";
    return request;
}

mail::check_request imap_at(const QString &host, int port, security secured)
{
    mail::check_request request;
    request.settings.kind = client_kind::imap;
    request.settings.incoming = {host, port, secured, "ann"};
    request.settings.authority_file = made().authority();
    request.password = "apple tree";
    return request;
}

// An mbox file that is not there comes first, and is no server to wait for.
mail::check_request sending_at(const smtp_sink &sink, security secured)
{
    mail::check_request request;
    request.settings.kind = client_kind::mbox;
    request.settings.sending = mail::send_by::smtp;
    request.settings.smtp = {"127.0.0.1", sink.port(), secured, "ann"};
    request.settings.from = "shop@example.org";
    request.settings.authority_file = made().authority();
    request.smtp_password = "apple tree";
    return request;
}

smtp_options with_login()
{
    smtp_options options;
    options.user = "ann";
    options.password = "apple tree";
    return options;
}

#define SAYS(heard, step, wanted, ...)                                                                                 \
    do {                                                                                                               \
        for (const QString &one : QStringList{__VA_ARGS__})                                                            \
            QVERIFY2(heard.words(step).contains(one), qPrintable(heard.text()));                                       \
        QVERIFY2(heard.state(step) == wanted, qPrintable(heard.text()));                                               \
    } while (false)

}

class mail_client_check_test : public QObject {
    Q_OBJECT
private slots:

    void a_mailbox_that_works_data()
    {
        QTest::addColumn<client_kind>("kind");
        QTest::addColumn<security>("secured");
        QTest::newRow("IMAP without encryption") << client_kind::imap << security::none;
        QTest::newRow("IMAP by STARTTLS") << client_kind::imap << security::starttls;
        QTest::newRow("IMAP by TLS") << client_kind::imap << security::tls;
        QTest::newRow("POP3 without encryption") << client_kind::pop3 << security::none;
        QTest::newRow("POP3 by STARTTLS") << client_kind::pop3 << security::starttls;
        QTest::newRow("POP3 by TLS") << client_kind::pop3 << security::tls;
    }
    void a_mailbox_that_works()
    {
        QFETCH(client_kind, kind);
        QFETCH(security, secured);
        dovecot_options options;
        options.certificate = made().good();
        dovecot_server server(options);
        for (int number = 0; number < 3; ++number)
            server.deliver("ann", simple_mail{"ann@localhost", "bob@localhost", "Hello", "Text\n"}, 1767268800);
        const heard_steps heard(ann_at(kind, secured, server));
        QVERIFY2(heard.outcome.receives, qPrintable(heard.text()));
        QVERIFY(!heard.outcome.sends && !heard.outcome.cancelled);
        SAYS(heard, "Mail server", check_state::good, "127.0.0.1 answers");
        SAYS(heard, "Encryption", check_state::good, secured == security::none ? "this machine" : "is encrypted");
        SAYS(heard, "Signing in", check_state::good, "ann");
        SAYS(heard, "Inbox", check_state::good, "3 mails");
        SAYS(heard, "Sending", check_state::warning, "Nothing goes out");
        if (kind == client_kind::imap)
            SAYS(heard, "Folder Tessaly_Inbox", check_state::good, "has been made");
        else
            SAYS(heard, "Names of the mails", check_state::good, "fetched once");
    }

    void an_empty_pop3_mailbox()
    {
        dovecot_server server;
        const heard_steps heard(ann_at(client_kind::pop3, security::none, server));
        QVERIFY2(heard.outcome.receives, qPrintable(heard.text()));
        SAYS(heard, "Inbox", check_state::good, "empty");
    }

    void a_mailbox_with_one_mail_and_a_folder()
    {
        dovecot_server server;
        server.deliver("ann", simple_mail{"ann@localhost", "bob@localhost", "Hello", "Text\n"}, 1767268800);
        server.make_folder("ann", "Tessaly_Inbox");
        const heard_steps heard(ann_at(client_kind::imap, security::none, server));
        SAYS(heard, "Inbox", check_state::good, "one mail");
        SAYS(heard, "Folder Tessaly_Inbox", check_state::good, "It is there");
    }

    void a_folder_in_other_capitals_is_the_folder()
    {
        dovecot_server server;
        server.make_folder("ann", "TESSALY_inbox");
        const heard_steps heard(ann_at(client_kind::imap, security::none, server));
        SAYS(heard, "Folder Tessaly_Inbox", check_state::good, "It is there");
        QVERIFY(!QFile::exists(server.maildir("ann", "Tessaly_Inbox")));
    }

    void folders_below_the_inbox()
    {
        dovecot_options options;
        options.prefix = "INBOX.";
        dovecot_server server(options);
        const heard_steps first(ann_at(client_kind::imap, security::none, server));
        SAYS(first, "Folder Tessaly_Inbox", check_state::good, "has been made");
        const heard_steps second(ann_at(client_kind::imap, security::none, server));
        SAYS(second, "Folder Tessaly_Inbox", check_state::good, "It is there");
    }

    void a_folder_that_cannot_be_made()
    {
        using namespace scripted;
        scripted_server server(script{
            say("* OK hi\r\n"), expect("%t CAPABILITY"), say("* CAPABILITY IMAP4rev1 AUTH=PLAIN SASL-IR\r\n%t OK\r\n"),
            expect("%t AUTHENTICATE PLAIN"), say("%t OK\r\n"), expect("%t EXAMINE"), say("* 7 EXISTS\r\n%t OK\r\n"),
            expect("%t LIST"), say("* LIST () NIL {5}\r\nINBOX\r\n%t OK\r\n"), expect("%t LIST"),
            say("* LIST () \"/\" {4}\r\n\"}\\ \r\n%t OK\r\n"), expect("%t CREATE"),
            say("%t NO [CANNOT] Folders are made by the office\r\n"), wait_for_end()});
        const heard_steps heard(imap_at("127.0.0.1", server.port, security::none));
        SAYS(heard, "Inbox", check_state::good, "7 mails");
        SAYS(heard, "Folder Tessaly_Inbox", check_state::failed, "no such folder", "Folders are made by the office");
        QVERIFY(!heard.outcome.receives);
        QCOMPARE(server.unexpected(), QByteArray());
    }

    void a_pop3_server_that_names_no_mails()
    {
        using namespace scripted;
        scripted_server server(script{say("+OK hi\r\n"), expect("CAPA"), say("+OK\r\nUSER\r\n.\r\n"), expect("USER"),
                                      say("+OK\r\n"), expect("PASS"), say("+OK\r\n"), expect("STAT"),
                                      say("+OK 2 900\r\n"), expect("UIDL"), say("-ERR what?\r\n"), wait_for_end()});
        mail::check_request request = imap_at("127.0.0.1", server.port, security::none);
        request.settings.kind = client_kind::pop3;
        const heard_steps heard(request);
        SAYS(heard, "Names of the mails", check_state::failed, "UIDL", "Use IMAP");
        QVERIFY(!heard.outcome.receives);
    }

    void a_server_that_says_nonsense_data()
    {
        QTest::addColumn<QByteArray>("inbox");
        QTest::newRow("an endless line") << QByteArray(200000, 'x');
        QTest::newRow("a literal without end") << QByteArray("* LIST () NIL {99999999999}\r\n");
        QTest::newRow("the end") << QByteArray();
    }
    void a_server_that_says_nonsense()
    {
        QFETCH(QByteArray, inbox);
        using namespace scripted;
        scripted_server server(script{
            say("* OK hi\r\n"), expect("%t CAPABILITY"), say("* CAPABILITY IMAP4rev1 AUTH=PLAIN SASL-IR\r\n%t OK\r\n"),
            expect("%t AUTHENTICATE PLAIN"), say("%t OK\r\n"), expect("%t EXAMINE"), say(inbox), hang_up()});
        const heard_steps heard(imap_at("127.0.0.1", server.port, security::none));
        QVERIFY2(heard.state("Inbox") == check_state::failed, qPrintable(heard.text()));
        QVERIFY(!heard.words("Inbox").isEmpty());
        QVERIFY(!heard.outcome.receives);
    }

    void a_password_that_travels_readable()
    {
        dovecot_server server;
        const heard_steps heard(imap_at("mail.localhost", server.imap_port, security::none)); // for all it can know
        SAYS(heard, "Encryption", check_state::warning, "password", "readable");
        QVERIFY(heard.outcome.receives);
    }

    void a_wrong_password_data()
    {
        QTest::addColumn<client_kind>("kind");
        QTest::newRow("IMAP") << client_kind::imap;
        QTest::newRow("POP3") << client_kind::pop3;
    }
    void a_wrong_password()
    {
        QFETCH(client_kind, kind);
        dovecot_server server;
        mail::check_request request = ann_at(kind, security::none, server);
        request.password = "WRONG-word";
        const heard_steps heard(request);
        SAYS(heard, "Mail server", check_state::good, "answers");
        SAYS(heard, "Signing in", check_state::failed, "user name and password", "application password");
        QVERIFY(!heard.outcome.receives);
        QVERIFY(!heard.text().contains("WRONG-word"));
    }

    void a_server_that_is_not_there_data()
    {
        QTest::addColumn<QString>("host");
        QTest::addColumn<QStringList>("words");
        QTest::newRow("an unknown name") << "imap.no-such-place.invalid" << QStringList{"no server called", "spelling"};
        QTest::newRow("nobody answers") << "127.0.0.1" << QStringList{"cannot be reached", "port", "firewall"};
        QTest::newRow("no name at all") << "" << QStringList{"No server is set"};
        QTest::newRow("a name that is none") << "imap example" << QStringList{"cannot be the name"};
    }
    void a_server_that_is_not_there()
    {
        QFETCH(QString, host);
        QFETCH(QStringList, words);
        const heard_steps heard(imap_at(host, free_loopback_port(), security::tls));
        for (const QString &word : words)
            SAYS(heard, "Mail server", check_state::failed, word);
        QVERIFY(!heard.outcome.receives);
        QVERIFY(heard.words("Signing in").isEmpty());
    }

    void no_user_name()
    {
        mail::check_request request = imap_at("127.0.0.1", free_loopback_port(), security::tls);
        request.settings.incoming.user.clear();
        SAYS(heard_steps(request), "Mail server", check_state::failed, "No user name");
    }

    void a_certificate_that_is_not_good_data()
    {
        QTest::addColumn<QString>("which");
        QTest::addColumn<QString>("why");
        QTest::addColumn<security>("secured");
        const QList<QPair<QString, QString>> kinds{{"other host", "another server name"},
                                                   {"expired", "expired"},
                                                   {"unknown authority", "authority that this computer does not know"},
                                                   {"self-signed", "signed by itself"}};
        for (const auto &[which, why] : kinds) {
            QTest::newRow(qPrintable(which + ", TLS")) << which << why << security::tls;
            QTest::newRow(qPrintable(which + ", STARTTLS")) << which << why << security::starttls;
        }
    }
    void a_certificate_that_is_not_good()
    {
        QFETCH(QString, which);
        QFETCH(QString, why);
        QFETCH(security, secured);
        const certificate_files files = which == "other host"          ? made().other_host()
                                        : which == "expired"           ? made().expired()
                                        : which == "unknown authority" ? made().unknown_authority()
                                                                       : made().self_signed();
        dovecot_options options;
        options.certificate = files;
        dovecot_server server(options);
        for (const client_kind kind : {client_kind::imap, client_kind::pop3}) {
            const heard_steps heard(ann_at(kind, secured, server));
            SAYS(heard, "Encryption", check_state::failed, "certificate", why);
            QVERIFY(!heard.outcome.receives);
        }
        smtp_options sending = with_login();
        sending.certificate = files;
        sending.tls_at_once = secured == security::tls;
        const smtp_sink sink(sending);
        const heard_steps heard(sending_at(sink, secured));
        SAYS(heard, "Encryption of sending", check_state::failed, "certificate", why);
        QVERIFY(!heard.outcome.sends);
        QCOMPARE(sink.logins(), 0);
    }

    void no_encryption_is_offered()
    {
        dovecot_server server;
        for (const client_kind kind : {client_kind::imap, client_kind::pop3}) {
            const heard_steps heard(ann_at(kind, security::starttls, server));
            SAYS(heard, "Encryption", check_state::failed, "does not offer", "STARTTLS", "another kind of encryption");
        }
        const smtp_sink sink(with_login());
        SAYS(heard_steps(sending_at(sink, security::starttls)), "Encryption of sending", check_state::failed,
             "does not offer", "STARTTLS");
        QCOMPARE(sink.logins(), 0);
    }

    void tls_at_a_port_that_speaks_none()
    {
        dovecot_server server;
        const heard_steps heard(imap_at("127.0.0.1", server.imap_port, security::tls));
        SAYS(heard, "Encryption", check_state::failed, "another kind of encryption");
    }

    void tokens()
    {
        dovecot_options options;
        options.mechanisms = QStringList{"plain", "login", "xoauth2"};
        dovecot_server server(options);
        mail::check_request request = ann_at(client_kind::imap, security::none, server);
        request.settings.use_token = true;
        request.settings.token_command = "echo token-of-ann";
        const heard_steps good(request);
        QVERIFY2(good.outcome.receives, qPrintable(good.text()));
        SAYS(good, "Access token", check_state::good, "command");
        QVERIFY(!good.text().contains("token-of-ann"));

        request.settings.token_command = "echo token-of-bob";
        const heard_steps refused(request);
        SAYS(refused, "Signing in", check_state::failed, "access token");
        QVERIFY(!refused.text().contains("token-of-bob"));

        request.settings.token_command = "echo not today >&2; exit 4";
        const heard_steps none(request);
        SAYS(none, "Access token", check_state::failed, "status 4", "not today");
        SAYS(none, "Mail server", check_state::skipped, "no access token");

        request.settings.token_command.clear();
        request.password = "token-of-ann";
        const heard_steps typed(request);
        QVERIFY2(typed.outcome.receives, qPrintable(typed.text()));
    }

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

QTEST_GUILESS_MAIN(mail_client_check_test)
#include "mail_client_check_test.moc"
