// What the page "Mail Client" saves, and what it refuses to save and says why.
#include "screens/preferences/mail_client_frm.h"
#include "screens/screen.h"
#include "support/screens_driver.h"
#include "support/screens_mail_page.h"
#include "support/screens_page_site.h"
#include "support/scripted_dialogs.h"

#include <QCheckBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QTest>

class mail_client_saving_test : public QObject {
    Q_OBJECT
private slots:
    void ok_saves_all_and_closes()
    {
        page_site site;
        site.open();
        type_good_settings();
        page::type("path_t", "/nowhere"); // of another kind: kept, not judged
        page::press("ok_b");
        QVERIFY(!is_loaded<mail_client_frm>());
        const mail::client_settings saved = site.saved();
        QVERIFY(saved.configured);
        QVERIFY(saved.kind == mail::client_kind::imap);
        QCOMPARE(saved.incoming.host, "mail.shop.example");
        QCOMPARE(saved.incoming.user, "ann@shop.example");
        QCOMPARE(saved.incoming.port, 0);
        QVERIFY(saved.sending == mail::send_by::smtp);
        QCOMPARE(saved.smtp.host, "smtp.shop.example");
        QCOMPARE(saved.smtp.user, "");
        QCOMPARE(saved.from, "ann@shop.example");
        QCOMPARE(passwords::read(passwords::of::mailbox), secret);
        the<mail_client_frm>().show();
        QCOMPARE(page::field("password_t").text(), secret);
        QCOMPARE(page::field("address_t").text(), "ann@shop.example");
        QVERIFY(page::label("in_force_l").startsWith("In force now: mail is fetched from mail.shop.example (IMAP)"));
    }

    void without_a_keyring_the_user_is_told_where_the_password_lies()
    {
        page_site site;
        site.open();
        QVERIFY(!control<QLabel>(the<mail_client_frm>(), "file_warning_l").isVisible());
        type_good_settings();
        QVERIFY(control<QLabel>(the<mail_client_frm>(), "file_warning_l").isVisible());
        page::press("ok_b");
        QCOMPARE(site.boxes.shown.size(), 1);
        QVERIFY(site.boxes.shown[0].contains("settings file"));
        QVERIFY(!site.boxes.shown[0].contains(secret));
        the<mail_client_frm>().show();
        QVERIFY(control<QLabel>(the<mail_client_frm>(), "file_warning_l").isVisible());
        page::press("ok_b"); // told once
        QCOMPARE(site.boxes.shown.size(), 1);
    }

    void what_cannot_be_right_is_told_and_nothing_is_lost_data()
    {
        QTest::addColumn<QString>("control_name");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("words");
        QTest::newRow("an address without its end") << "address_t"
                                                    << "ann@"
                                                    << "\"ann@\" is no mail address.";
        QTest::newRow("no server") << "host_t"
                                   << ""
                                   << "The name of the mail server is missing. Type it, or press Test: it tries the "
                                      "usual names.";
        QTest::newRow("no name of a server")
            << "host_t"
            << "mail shop"
            << "\"mail shop\" cannot be the name of a server. It looks like mail.example.org.";
        QTest::newRow("no user") << "user_t"
                                 << ""
                                 << "The user name for the mail server is missing. Mostly it is your address.";
        QTest::newRow("no password") << "password_t"
                                     << ""
                                     << "The password is missing.";
        QTest::newRow("no sending server")
            << "smtp_host_t"
            << ""
            << "The name of the sending server is missing. Type it, or press Test: it tries the usual names.";
        QTest::newRow("no address to go out from") << "from_t"
                                                   << ""
                                                   << "The address that mail goes out from is missing.";
        QTest::newRow("certificates that are not there") << "authority_t"
                                                         << "/nowhere.pem"
                                                         << "The file of certificates /nowhere.pem cannot be read.";
        QTest::newRow("certificates that are a folder") << "authority_t"
                                                        << "/usr"
                                                        << "The file of certificates /usr cannot be read.";
    }

    void what_cannot_be_right_is_told_and_nothing_is_lost()
    {
        QFETCH(QString, control_name);
        QFETCH(QString, typed);
        page_site site;
        site.open();
        type_good_settings();
        page::type(qPrintable(control_name), typed);
        page::press("ok_b");
        QCOMPARE(site.boxes.shown.size(), 1);
        QTEST(site.boxes.shown[0], "words");
        QVERIFY(is_visible<mail_client_frm>());
        QCOMPARE(the<mail_client_frm>().focusWidget()->objectName(), control_name);
        QCOMPARE(page::field(qPrintable(control_name)).text(), typed);
        QVERIFY(!site.saved().configured);
    }

    void a_maildir_must_be_there_or_empty()
    {
        page_site site;
        scripted_dialogs dialogs;
        site.open();
        page::choose("maildir_o");
        QVERIFY(!page::field("password_t").isVisible());
        QVERIFY(page::field("path_t").isVisible());
        page::type("path_t", site.file("gone"));
        page::press("ok_b");
        QCOMPARE(site.boxes.shown, QStringList{"There is no folder " + site.file("gone") + "."});
        dialogs.choices.emplace_back(site.maildir());
        page::press("path_b");
        QCOMPARE(dialogs.asked, QStringList{site.file("gone") + "|folder"});
        page::press("ok_b");
        QVERIFY(site.saved().kind == mail::client_kind::maildir);
        QCOMPARE(site.saved().maildir, site.maildir());
    }

    void a_link_to_a_maildir_or_an_mbox_will_do()
    {
        page_site site;
        QVERIFY(QFile::link(site.maildir(), site.file("my mail")));
        QFile box(site.file("inbox.mbox"));
        QVERIFY(box.open(QIODevice::WriteOnly));
        QVERIFY(QFile::link(site.file("inbox.mbox"), site.file("my box")));
        site.open();
        page::choose("maildir_o");
        page::type("path_t", site.file("my mail"));
        page::press("ok_b");
        QCOMPARE(site.saved().maildir, site.file("my mail"));
        site.open();
        page::choose("mbox_o");
        page::type("path_t", site.file("my box"));
        page::press("ok_b");
        QCOMPARE(site.saved().mbox, site.file("my box"));
        QCOMPARE(site.boxes.shown, QStringList());
    }

    void an_mbox_that_is_not_there_is_told()
    {
        page_site site;
        site.open();
        page::choose("mbox_o");
        page::type("path_t", site.file("gone"));
        page::press("ok_b");
        QCOMPARE(site.boxes.shown, QStringList{"There is no file " + site.file("gone") + "."});
    }

    void an_mbox_must_be_a_file()
    {
        page_site site;
        scripted_dialogs dialogs;
        site.open();
        page::choose("mbox_o");
        page::press("ok_b");
        page::type("path_t", site.maildir());
        page::press("ok_b");
        QCOMPARE(site.boxes.shown,
                 (QStringList{"Choose the mbox file that your mail lies in.",
                              site.maildir() + " is a folder. An mbox is one file; for a folder choose "
                                               "Maildir."}));
        QFile box(site.file("inbox.mbox"));
        QVERIFY(box.open(QIODevice::WriteOnly));
        dialogs.choices.emplace_back(site.file("inbox.mbox"));
        page::press("path_b");
        page::choose("maildir_o"); // each kind keeps its own path
        QCOMPARE(page::field("path_t").text(), "");
        page::choose("mbox_o");
        page::press("ok_b");
        QVERIFY(site.saved().kind == mail::client_kind::mbox);
        QCOMPARE(site.saved().mbox, site.file("inbox.mbox"));
    }

    void sending_has_a_password_of_its_own_where_it_differs()
    {
        page_site site;
        site.open();
        type_good_settings();
        QVERIFY(!page::field("smtp_password_t").isVisible());
        page::tick("other_password_c");
        page::press("ok_b");
        QCOMPARE(site.boxes.shown, QStringList{"The password for the sending server is missing."});
        page::type("smtp_password_t", "other-4712");
        page::press("ok_b");
        QCOMPARE(passwords::read(passwords::of::sending), "other-4712");
        QCOMPARE(passwords::read(passwords::of::mailbox), secret);
    }

    void a_token_command_stands_for_the_password()
    {
        page_site site;
        site.open();
        type_good_settings();
        page::type("password_t", "");
        page::tick("token_c");
        QCOMPARE(page::label("password_lb"), "Access to&ken:");
        page::type("token_command_t", "print-token ann");
        QVERIFY(!page::field("password_t").isEnabled());
        page::press("ok_b");
        QCOMPARE(site.boxes.shown, QStringList());
        QVERIFY(site.saved().use_token);
        QCOMPARE(site.saved().token_command, "print-token ann");
    }

    // Another user there gets no password of the mailbox by itself, but this page says that it is the same one.
    void one_password_serves_two_users()
    {
        page_site site;
        site.open();
        type_good_settings();
        page::type("smtp_user_t", "shop-4711");
        page::press("ok_b");
        QCOMPARE(passwords::read(passwords::of::sending), secret);
        site.open();
        QVERIFY(!control<QCheckBox>(the<mail_client_frm>(), "other_password_c").isChecked());
        page::type("password_t", "newer-4713");
        page::press("ok_b");
        QCOMPARE(passwords::read(passwords::of::sending), "newer-4713");
        site.open();
        page::type("smtp_user_t", "");
        page::press("ok_b");
        QVERIFY(passwords::where(passwords::of::sending) == passwords::place::nowhere);
    }
};

QTEST_MAIN(mail_client_saving_test)
#include "mail_client_saving_test.moc"
