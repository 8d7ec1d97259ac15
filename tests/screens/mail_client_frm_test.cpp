// The page "Mail Client" through its controls: what it fills in, what it saves and refuses, its test, and keys alone.
// The test's answers are scripted here; real servers: mail_client_servers_test.cpp.
#include "frame/mail_client_page.h"
#include "platform/settings.h"
#include "screens/frame/menuFrm.h"
#include "screens/frame/outbox_frm.h"
#include "screens/preferences/mail_client_frm.h"
#include "screens/screen.h"
#include "support/screens_driver.h"
#include "support/screens_site.h"
#include "support/scripted_dialogs.h"

#include <QAccessible>
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QSemaphore>
#include <QSpinBox>
#include <QTest>

namespace {

const char *const secret = "sesame-4711";

QLineEdit &field(const char *name)
{
    return control<QLineEdit>(the<mail_client_frm>(), name);
}

// As a person types: what stood there is replaced.
void type(const char *name, const QString &text)
{
    field(name).setFocus();
    field(name).selectAll();
    QTest::keyClick(&field(name), Qt::Key_Delete);
    QTest::keyClicks(&field(name), text);
}

void press(const char *button)
{
    control<QPushButton>(the<mail_client_frm>(), button).click();
}

void choose(const char *radio)
{
    control<QRadioButton>(the<mail_client_frm>(), radio).click();
}

QString label(const char *name)
{
    return control<QLabel>(the<mail_client_frm>(), name).text();
}

QString list_choice(const char *name)
{
    return control<QComboBox>(the<mail_client_frm>(), name).currentText();
}

// A site with nothing set up; the page stands open.
struct page_site : screens_site {
    page_site()
    {
        SaveSetting("mail_client", "kind", {});
        SaveSetting("mail_client", "maildir", {});
        passwords::forget_remembered();
        QFile::copy(SOURCE_ROOT "/delivered/mail_providers.tsv", file("mail_providers.tsv"));
    }
    void open() { the<mail_client_frm>().show(); }
    mail::client_settings saved() const { return mail::read_client_settings(); }
};

void type_good_settings()
{
    type("address_t", "ann@shop.example");
    type("password_t", secret);
    type("host_t", "mail.shop.example");
    type("smtp_host_t", "smtp.shop.example");
}

// A check that says its lines and then waits until it is let go, or given up.
struct held_check {
    QSemaphore go;
    mail::check_request asked;
    check_thread::routine routine()
    {
        return [this](const mail::check_request &request, const net::patience &patience, const auto &tell) {
            asked = request;
            tell({"Mail server", mail::check_state::running, {}});
            mail::check_outcome outcome;
            while (!go.tryAcquire(1, 5))
                if (patience.give_up()) {
                    outcome.cancelled = true;
                    return outcome;
                }
            tell({"Mail server", mail::check_state::good, "imap.shop.example answers."});
            tell({"Sending", mail::check_state::failed, "The password was not taken."});
            outcome.receives = true;
            outcome.found = request.settings;
            outcome.found.incoming.host = "imap.shop.example";
            return outcome;
        };
    }
};

}

class mail_client_frm_test : public QObject {
    Q_OBJECT
private slots:
    void the_menu_opens_it()
    {
        screens_site site;
        menuFrm console;
        console.show();
        control<QAction>(console, "mail_client_mnu").trigger();
        QVERIFY(is_visible<mail_client_frm>());
        QCOMPARE(the<mail_client_frm>().windowTitle(), "Mail Client");
    }

    void with_nothing_set_up_it_says_what_is_in_force()
    {
        page_site site;
        site.open();
        QCOMPARE(label("in_force_l"), "Nothing is set up: mail is read from the local folder " + site.file("mail") +
                                          " and what is sent stays in the Outbox.");
        QVERIFY(control<QRadioButton>(the<mail_client_frm>(), "imap_o").isChecked());
    }

    void each_kind_has_its_sentence()
    {
        page_site site;
        site.open();
        QCOMPARE(label("pop3_l"),
                 "Mail is read and left where it is. A mail that you delete in the Mail Auditor comes back "
                 "at the next fetch as long as the mailbox still holds it.");
        for (const char *name : {"imap_l", "maildir_l", "mbox_l"})
            QVERIFY(!label(name).isEmpty());
    }

    void the_address_of_a_known_provider_fills_the_rest()
    {
        page_site site;
        site.open();
        type("address_t", "ann@gmail.com");
        QCOMPARE(field("host_t").text(), "imap.gmail.com");
        QCOMPARE(field("user_t").text(), "ann@gmail.com");
        QCOMPARE(field("smtp_host_t").text(), "smtp.gmail.com");
        QCOMPARE(field("from_t").text(), "ann@gmail.com");
        QCOMPARE(list_choice("send_c"), "By a sending server (SMTP)");
        QVERIFY(control<QLabel>(the<mail_client_frm>(), "provider_l").isVisible());
        choose("pop3_o");
        QCOMPARE(field("host_t").text(), "pop.gmail.com");
    }

    void what_the_user_typed_is_left_alone()
    {
        page_site site;
        site.open();
        type("host_t", "my.server.example");
        type("address_t", "ann@gmail.com");
        QCOMPARE(field("host_t").text(), "my.server.example");
        QCOMPARE(field("smtp_host_t").text(), "smtp.gmail.com");
        type("host_t", ""); // free again
        type("address_t", "ann.b@gmail.com");
        QCOMPARE(field("host_t").text(), "imap.gmail.com");
    }

    void another_address_takes_the_guess_of_the_former_away()
    {
        page_site site;
        site.open();
        type("address_t", "ann@gmail.com");
        type("address_t", "ann@shop.example");
        QCOMPARE(field("host_t").text(), "");
        QVERIFY(field("host_t").placeholderText().contains("shop.example"));
        QVERIFY(!control<QLabel>(the<mail_client_frm>(), "provider_l").isVisible());
    }

    void ok_saves_all_and_closes()
    {
        page_site site;
        site.open();
        type_good_settings();
        type("path_t", "/nowhere"); // of another kind: kept, not judged
        press("ok_b");
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
        QCOMPARE(field("password_t").text(), secret);
        QCOMPARE(field("address_t").text(), "ann@shop.example");
        QVERIFY(label("in_force_l").startsWith("In force now: mail is fetched from mail.shop.example (IMAP)"));
    }

    void without_a_keyring_the_user_is_told_where_the_password_lies()
    {
        page_site site;
        site.open();
        QVERIFY(!control<QLabel>(the<mail_client_frm>(), "file_warning_l").isVisible());
        type_good_settings();
        QVERIFY(control<QLabel>(the<mail_client_frm>(), "file_warning_l").isVisible());
        press("ok_b");
        QCOMPARE(site.boxes.shown.size(), 1);
        QVERIFY(site.boxes.shown[0].contains("settings file"));
        QVERIFY(!site.boxes.shown[0].contains(secret));
        the<mail_client_frm>().show();
        QVERIFY(control<QLabel>(the<mail_client_frm>(), "file_warning_l").isVisible());
        press("ok_b"); // told once
        QCOMPARE(site.boxes.shown.size(), 1);
    }

    void cancel_leaves_all_as_it_was_data()
    {
        QTest::addColumn<bool>("by_key");
        QTest::newRow("the button") << false;
        QTest::newRow("Escape") << true;
    }

    void cancel_leaves_all_as_it_was()
    {
        QFETCH(bool, by_key);
        page_site site;
        site.open();
        type_good_settings();
        if (by_key)
            QTest::keyClick(&field("host_t"), Qt::Key_Escape);
        else
            press("cancel_b");
        QVERIFY(!is_loaded<mail_client_frm>());
        QVERIFY(!site.saved().configured);
        QCOMPARE(site.saved().incoming.host, "");
        QCOMPARE(passwords::read(passwords::of::mailbox), "");
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
    }

    void what_cannot_be_right_is_told_and_nothing_is_lost()
    {
        QFETCH(QString, control_name);
        QFETCH(QString, typed);
        page_site site;
        site.open();
        type_good_settings();
        type(qPrintable(control_name), typed);
        press("ok_b");
        QCOMPARE(site.boxes.shown.size(), 1);
        QTEST(site.boxes.shown[0], "words");
        QVERIFY(is_visible<mail_client_frm>());
        QCOMPARE(the<mail_client_frm>().focusWidget()->objectName(), control_name);
        QCOMPARE(field(qPrintable(control_name)).text(), typed);
        QVERIFY(!site.saved().configured);
    }

    void a_maildir_must_be_there_or_empty()
    {
        page_site site;
        scripted_dialogs dialogs;
        site.open();
        choose("maildir_o");
        QVERIFY(!field("password_t").isVisible());
        QVERIFY(field("path_t").isVisible());
        type("path_t", site.file("gone"));
        press("ok_b");
        QCOMPARE(site.boxes.shown, QStringList{"There is no folder " + site.file("gone") + "."});
        dialogs.choices.emplace_back(site.maildir());
        press("path_b");
        QCOMPARE(dialogs.asked, QStringList{site.file("gone") + "|folder"});
        press("ok_b");
        QVERIFY(site.saved().kind == mail::client_kind::maildir);
        QCOMPARE(site.saved().maildir, site.maildir());
    }

    void an_mbox_must_be_a_file()
    {
        page_site site;
        scripted_dialogs dialogs;
        site.open();
        choose("mbox_o");
        press("ok_b");
        type("path_t", site.maildir());
        press("ok_b");
        QCOMPARE(site.boxes.shown,
                 (QStringList{"Choose the mbox file that your mail lies in.",
                              site.maildir() + " is a folder. An mbox is one file; for a folder choose "
                                               "Maildir."}));
        QFile box(site.file("inbox.mbox"));
        QVERIFY(box.open(QIODevice::WriteOnly));
        dialogs.choices.emplace_back(site.file("inbox.mbox"));
        press("path_b");
        choose("maildir_o"); // each kind keeps its own path
        QCOMPARE(field("path_t").text(), "");
        choose("mbox_o");
        press("ok_b");
        QVERIFY(site.saved().kind == mail::client_kind::mbox);
        QCOMPARE(site.saved().mbox, site.file("inbox.mbox"));
    }

    void sending_has_a_password_of_its_own_where_it_differs()
    {
        page_site site;
        site.open();
        type_good_settings();
        QVERIFY(!field("smtp_password_t").isVisible());
        control<QCheckBox>(the<mail_client_frm>(), "other_password_c").click();
        press("ok_b");
        QCOMPARE(site.boxes.shown, QStringList{"The password for the sending server is missing."});
        type("smtp_password_t", "other-4712");
        press("ok_b");
        QCOMPARE(passwords::read(passwords::of::sending), "other-4712");
        QCOMPARE(passwords::read(passwords::of::mailbox), secret);
    }

    void a_token_command_stands_for_the_password()
    {
        page_site site;
        site.open();
        type_good_settings();
        type("password_t", "");
        control<QCheckBox>(the<mail_client_frm>(), "token_c").click();
        QCOMPARE(label("password_lb"), "&Access token:");
        type("token_command_t", "print-token ann");
        QVERIFY(!field("password_t").isEnabled());
        press("ok_b");
        QCOMPARE(site.boxes.shown, QStringList());
        QVERIFY(site.saved().use_token);
        QCOMPARE(site.saved().token_command, "print-token ann");
    }

    void mail_that_goes_readable_is_warned_of()
    {
        page_site site;
        site.open();
        type_good_settings();
        auto &warning = control<QLabel>(the<mail_client_frm>(), "readable_l");
        QVERIFY(!warning.isVisible());
        control<QComboBox>(the<mail_client_frm>(), "security_c").setFocus();
        QTest::keyClick(&control<QComboBox>(the<mail_client_frm>(), "security_c"), Qt::Key_End);
        QCOMPARE(list_choice("security_c"), "None");
        QVERIFY(warning.isVisible());
        QCOMPARE(control<QSpinBox>(the<mail_client_frm>(), "port_s").text(), "usual (143)");
        type("host_t", "127.0.0.1");
        QVERIFY(!warning.isVisible());
    }

    void a_test_shows_its_steps_and_fills_in_what_it_found()
    {
        page_site site;
        held_check check;
        site.open();
        the<mail_client_frm>().set_check(check.routine());
        type("address_t", "ann@shop.example");
        type("password_t", secret);
        press("test_b");
        auto &steps = control<QListWidget>(the<mail_client_frm>(), "steps_li");
        QTRY_COMPARE(steps.count(), 1);
        QCOMPARE(steps.item(0)->data(Qt::AccessibleTextRole).toString(), "running, Mail server");
        QVERIFY(!control<QPushButton>(the<mail_client_frm>(), "ok_b").isEnabled());
        check.go.release();
        QTRY_VERIFY(control<QPushButton>(the<mail_client_frm>(), "ok_b").isEnabled());
        QCOMPARE(steps.count(), 2);
        QCOMPARE(steps.item(0)->text(), "Mail server: imap.shop.example answers.");
        QCOMPARE(steps.item(1)->data(Qt::AccessibleTextRole).toString(),
                 "failed, Sending: The password was not taken.");
        QCOMPARE(label("result_l"), "Mail can be fetched, but not sent. The line that failed says why.");
        QCOMPARE(field("host_t").text(), "imap.shop.example");
        QCOMPARE(check.asked.address, "ann@shop.example");
        QCOMPARE(check.asked.password, secret);
        QCOMPARE(check.asked.settings.incoming.host, "");
        QVERIFY(!site.saved().configured); // only OK saves
    }

    void a_test_is_stopped_by_its_button_and_by_escape_data()
    {
        QTest::addColumn<bool>("by_key");
        QTest::newRow("the button") << false;
        QTest::newRow("Escape") << true;
    }

    void a_test_is_stopped_by_its_button_and_by_escape()
    {
        QFETCH(bool, by_key);
        page_site site;
        held_check check;
        site.open();
        the<mail_client_frm>().set_check(check.routine());
        type_good_settings();
        press("test_b");
        auto &stop = control<QPushButton>(the<mail_client_frm>(), "stop_b");
        if (by_key)
            QTest::keyClick(&stop, Qt::Key_Escape);
        else
            QTest::mouseClick(&stop, Qt::LeftButton);
        QTRY_COMPARE(label("result_l"), "The test was stopped.");
        QVERIFY(is_visible<mail_client_frm>());
        QCOMPARE(field("host_t").text(), "mail.shop.example");
        QVERIFY(field("address_t").isEnabled());
    }

    void closing_while_a_test_runs_ends_it()
    {
        page_site site;
        held_check check;
        site.open();
        the<mail_client_frm>().set_check(check.routine());
        type_good_settings();
        press("test_b");
        press("cancel_b");
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); // waits for the thread's end
        QVERIFY(!is_loaded<mail_client_frm>());
        QVERIFY(!site.saved().configured);
    }

    void without_an_address_there_is_nothing_to_test()
    {
        page_site site;
        site.open();
        press("test_b");
        QCOMPARE(site.boxes.shown, QStringList{"Please type your mail address first."});
    }

    void keys_alone_will_do()
    {
        page_site site;
        held_check check;
        check.go.release();
        site.open();
        the<mail_client_frm>().set_check(check.routine());
        QVERIFY(QTest::qWaitForWindowActive(&the<mail_client_frm>()));
        QTest::keyClicks(QApplication::focusWidget(), "ann@shop.example");
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QTest::keyClicks(QApplication::focusWidget(), secret);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_T, Qt::AltModifier);
        QTRY_COMPARE(field("host_t").text(), "imap.shop.example");
        QTRY_COMPARE(QApplication::focusWidget()->objectName(), "ok_b");
        type("smtp_host_t", "smtp.shop.example");
        QTest::keyClick(&field("smtp_host_t"), Qt::Key_Return);
        QVERIFY(site.saved().configured);
        QCOMPARE(site.saved().incoming.host, "imap.shop.example");
    }

    void enter_on_cancel_cancels()
    {
        page_site site;
        site.open();
        type_good_settings();
        auto &cancel = control<QPushButton>(the<mail_client_frm>(), "cancel_b");
        cancel.setFocus();
        QTest::keyClick(&cancel, Qt::Key_Return);
        QVERIFY(!is_loaded<mail_client_frm>());
        QVERIFY(!site.saved().configured);
    }

    void every_control_has_a_spoken_name_and_no_two_share_one()
    {
        page_site site;
        site.open();
        QStringList names;
        for (const QWidget *one : the<mail_client_frm>().findChildren<QWidget *>()) {
            if (one->objectName().startsWith("qt_") || one->objectName().isEmpty() ||
                !(one->focusPolicy() & Qt::TabFocus))
                continue;
            QVERIFY2(!one->accessibleName().isEmpty(), qPrintable(one->objectName()));
            QVERIFY2(!names.contains(one->accessibleName()), qPrintable(one->objectName()));
            names += one->accessibleName();
        }
        QVERIFY(names.size() > 20);
    }

    void a_password_is_neither_spoken_nor_logged()
    {
        page_site site;
        site.open();
        type_good_settings();
        const auto spoken = [] {
            return QAccessible::queryAccessibleInterface(&field("password_t"))->text(QAccessible::Value);
        };
        QVERIFY(!spoken().contains(secret));
        QCOMPARE(field("password_t").echoMode(), QLineEdit::Password);
        control<QCheckBox>(the<mail_client_frm>(), "show_c").click();
        QCOMPARE(field("password_t").echoMode(), QLineEdit::Normal);
        QVERIFY(!spoken().contains(secret));
        type("host_t", "");
        press("ok_b");
        QVERIFY(!site.boxes.shown.join(' ').contains(secret));
        QVERIFY(!site.status_lines.join(' ').contains(secret));
        QVERIFY(!QFile::exists(site.file("errorlog.txt")));
    }

    void the_outbox_opens_from_the_page()
    {
        page_site site;
        site.open();
        press("outbox_b");
        QVERIFY(is_visible<outbox_frm>());
    }
};

QTEST_MAIN(mail_client_frm_test)
#include "mail_client_frm_test.moc"
