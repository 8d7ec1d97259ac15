// The check of the settings against real servers: the mailbox, every failure of it by its words, and tokens. Sending:
// mail_client_check_sending_test.cpp. Mail on this machine: mail_client_check_local_test.cpp.
#include "support/check_requests.h"
#include "support/loopback.h"
#include "support/scripted_server.h"
#include <QFile>
#include <QTest>

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
};

QTEST_GUILESS_MAIN(mail_client_check_test)
#include "mail_client_check_test.moc"
