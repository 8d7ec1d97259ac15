// The Test button of the page "Mail Client", with scripted answers. Real servers: mail_client_servers_test.cpp.
#include "screens/preferences/mail_client_frm.h"
#include "screens/screen.h"
#include "support/screens_driver.h"
#include "support/screens_held_check.h"
#include "support/screens_mail_page.h"
#include "support/screens_page_site.h"

#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

namespace {

// The page is open, and its check waits until the test lets it go.
struct trial_site : page_site {
    trial_site()
    {
        open();
        the<mail_client_frm>().set_check(check.routine());
    }
    held_check check;
};

}

class mail_client_trial_test : public QObject {
    Q_OBJECT
private slots:
    void a_test_shows_its_steps_and_fills_in_what_it_found()
    {
        trial_site site;
        type_address_and_password();
        page::press("test_b");
        auto &steps = control<QListWidget>(the<mail_client_frm>(), "steps_li");
        QTRY_COMPARE(steps.count(), 1);
        QCOMPARE(steps.item(0)->data(Qt::AccessibleTextRole).toString(), "running, Mail server");
        QVERIFY(!control<QPushButton>(the<mail_client_frm>(), "ok_b").isEnabled());
        site.check.go.release();
        QTRY_VERIFY(control<QPushButton>(the<mail_client_frm>(), "ok_b").isEnabled());
        QCOMPARE(steps.count(), 2);
        QCOMPARE(steps.item(0)->text(), "Mail server: imap.shop.example answers.");
        QCOMPARE(steps.item(1)->data(Qt::AccessibleTextRole).toString(),
                 "failed, Sending: The password was not taken.");
        QCOMPARE(page::label("result_l"), "Mail can be fetched, but not sent. The line that failed says why.");
        QCOMPARE(page::field("host_t").text(), "imap.shop.example");
        QCOMPARE(site.check.asked.address, "ann@shop.example");
        QCOMPARE(site.check.asked.password, secret);
        QCOMPARE(site.check.asked.settings.incoming.host, "");
        QVERIFY(!site.saved().configured); // only OK saves
    }

    void sending_of_which_nothing_was_typed_is_only_guessed_data()
    {
        QTest::addColumn<QByteArray>("typed_field");
        QTest::addColumn<bool>("is_guessed");
        QTest::newRow("nothing typed") << QByteArray() << true;
        QTest::newRow("the server") << QByteArray("smtp_host_t") << false;
        QTest::newRow("the user") << QByteArray("smtp_user_t") << false;
    }

    void sending_of_which_nothing_was_typed_is_only_guessed()
    {
        QFETCH(QByteArray, typed_field);
        QFETCH(bool, is_guessed);
        trial_site site;
        type_address_and_password();
        if (!typed_field.isEmpty())
            page::type(typed_field, "smtp.shop.example");
        page::press("test_b");
        site.check.go.release();
        QTRY_VERIFY(page::test_has_ended());
        QCOMPARE(site.check.asked.sending_is_guessed, is_guessed);
    }

    void the_road_that_was_chosen_is_not_guessed()
    {
        trial_site site;
        type_address_and_password();
        page::pick("send_c", 1);
        page::press("test_b");
        site.check.go.release();
        QTRY_VERIFY(page::test_has_ended());
        QVERIFY(!site.check.asked.sending_is_guessed);
    }

    void where_guessed_sending_does_not_work_fetching_alone_can_be_saved()
    {
        page_site site;
        site.open();
        the<mail_client_frm>().set_check([](const mail::check_request &request, const auto &, const auto &tell) {
            tell({"Mail server", mail::check_state::good, "imap.shop.example answers."});
            tell({"Sending server", mail::check_state::warning, "Sending is not set up: nobody answers."});
            mail::check_outcome outcome;
            outcome.receives = true;
            outcome.found = request.settings;
            outcome.found.incoming.host = "imap.shop.example";
            outcome.found.sending = mail::send_by::keep;
            return outcome;
        });
        type_address_and_password();
        page::press("test_b");
        QTRY_VERIFY(page::test_has_ended());
        QCOMPARE(page::label("result_l"), "It works: mail can be fetched. What is sent stays in the Outbox. Press OK "
                                          "to keep these settings.");
        page::press("ok_b");
        QVERIFY(site.saved().configured);
        QCOMPARE(site.saved().sending, mail::send_by::keep);
        QCOMPARE(site.saved().incoming.host, "imap.shop.example");
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
        trial_site site;
        type_good_settings();
        page::press("test_b");
        auto &stop = control<QPushButton>(the<mail_client_frm>(), "stop_b");
        if (by_key)
            QTest::keyClick(&stop, Qt::Key_Escape);
        else
            QTest::mouseClick(&stop, Qt::LeftButton);
        QTRY_COMPARE(page::label("result_l"), "The test was stopped.");
        QVERIFY(is_visible<mail_client_frm>());
        QCOMPARE(page::field("host_t").text(), "mail.shop.example");
        QVERIFY(page::field("address_t").isEnabled());
    }

    void closing_while_a_test_runs_ends_it()
    {
        trial_site site;
        type_good_settings();
        page::press("test_b");
        site.boxes.will_say_yes(); // what was typed is not saved
        page::press("cancel_b");
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); // waits for the thread's end
        QVERIFY(!is_loaded<mail_client_frm>());
        QVERIFY(!site.saved().configured);
    }

    void without_an_address_there_is_nothing_to_test()
    {
        page_site site;
        site.open();
        page::press("test_b");
        QCOMPARE(site.boxes.shown, QStringList{"Please type your mail address first."});
    }

    void without_a_password_there_is_nothing_to_test()
    {
        page_site site;
        site.open();
        page::type("address_t", "ann@shop.example");
        page::press("test_b");
        QCOMPARE(site.boxes.shown, QStringList{"Please type your password first."});
        QCOMPARE(the<mail_client_frm>().focusWidget()->objectName(), "password_t");
    }
};

QTEST_MAIN(mail_client_trial_test)
#include "mail_client_trial_test.moc"
