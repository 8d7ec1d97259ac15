// What the page "Mail Client" fills in by itself as an address is typed, and what it leaves alone.
#include "screens/preferences/mail_client_frm.h"
#include "screens/screen.h"
#include "support/screens_driver.h"
#include "support/screens_mail_page.h"
#include "support/screens_page_site.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>
#include <QTest>

class mail_client_filling_test : public QObject {
    Q_OBJECT
private slots:
    void the_address_of_a_known_provider_fills_the_rest()
    {
        page_site site;
        site.open();
        page::type("address_t", "ann@gmail.com");
        QCOMPARE(page::field("host_t").text(), "imap.gmail.com");
        QCOMPARE(page::field("user_t").text(), "ann@gmail.com");
        QCOMPARE(page::field("smtp_host_t").text(), "smtp.gmail.com");
        QCOMPARE(page::field("from_t").text(), "ann@gmail.com");
        QCOMPARE(page::list_choice("send_c"), "By a sending server (SMTP)");
        QVERIFY(control<QLabel>(the<mail_client_frm>(), "provider_l").isVisible());
        page::choose("pop3_o");
        QCOMPARE(page::field("host_t").text(), "pop.gmail.com");
    }

    void what_the_user_typed_is_left_alone()
    {
        page_site site;
        site.open();
        page::type("host_t", "my.server.example");
        page::type("address_t", "ann@gmail.com");
        QCOMPARE(page::field("host_t").text(), "my.server.example");
        QCOMPARE(page::field("smtp_host_t").text(), "smtp.gmail.com");
        page::type("host_t", ""); // free again
        page::type("address_t", "ann.b@gmail.com");
        QCOMPARE(page::field("host_t").text(), "imap.gmail.com");
    }

    void another_address_takes_the_guess_of_the_former_away()
    {
        page_site site;
        site.open();
        page::type("address_t", "ann@gmail.com");
        page::type("address_t", "ann@shop.example");
        QCOMPARE(page::field("host_t").text(), "");
        QVERIFY(page::field("host_t").placeholderText().contains("shop.example"));
        QVERIFY(!control<QLabel>(the<mail_client_frm>(), "provider_l").isVisible());
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
        QCOMPARE(page::list_choice("security_c"), "None");
        QVERIFY(warning.isVisible());
        QCOMPARE(control<QSpinBox>(the<mail_client_frm>(), "port_s").text(), "usual (143)");
        page::type("host_t", "127.0.0.1");
        QVERIFY(!warning.isVisible());
    }

    // A provider's servers go with the address also when they were saved; what was typed by hand stays.
    void a_saved_page_follows_another_address()
    {
        page_site site;
        site.open();
        page::type("address_t", "ann@gmail.com");
        page::type("password_t", secret);
        page::type("smtp_host_t", "my.server.example");
        page::press("ok_b");
        site.open();
        QCOMPARE(page::field("host_t").text(), "imap.gmail.com");
        page::type("address_t", "ann@gmx.de");
        QCOMPARE(page::field("host_t").text(), "imap.gmx.net");
        QCOMPARE(page::field("user_t").text(), "ann@gmx.de");
        QCOMPARE(page::field("from_t").text(), "ann@gmx.de");
        QCOMPARE(page::field("smtp_host_t").text(), "my.server.example");
    }

    void a_name_that_a_test_found_is_kept_and_goes_with_its_address()
    {
        page_site site;
        site.open();
        type_good_settings();
        page::type("host_t", "imap.shop.example"); // one of the likely names
        page::press("ok_b");
        site.open();
        QCOMPARE(page::field("host_t").text(), "imap.shop.example");
        page::choose("maildir_o");
        page::choose("imap_o");
        QCOMPARE(page::field("host_t").text(), "imap.shop.example");
        page::type("address_t", "ann@gmail.com");
        QCOMPARE(page::field("host_t").text(), "imap.gmail.com");
    }
};

QTEST_MAIN(mail_client_filling_test)
#include "mail_client_filling_test.moc"
