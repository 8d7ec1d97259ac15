// The page "Mail Client" as a screen: how it opens and closes, keys alone, and what is spoken. What it fills in, saves
// and tests: mail_client_filling, _saving and _trial_test.cpp.
#include "screens/frame/menuFrm.h"
#include "screens/frame/outbox_frm.h"
#include "screens/preferences/mail_client_frm.h"
#include "screens/screen.h"
#include "support/screens_driver.h"
#include "support/screens_held_check.h"
#include "support/screens_mail_page.h"
#include "support/screens_page_site.h"

#include <QAccessible>
#include <QAction>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>

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
        QCOMPARE(page::label("in_force_l"), "Nothing is set up: mail is read from the local folder " +
                                                site.file("mail") + " and what is sent stays in the Outbox.");
        QVERIFY(control<QRadioButton>(the<mail_client_frm>(), "imap_o").isChecked());
    }

    void each_kind_has_its_sentence()
    {
        page_site site;
        site.open();
        QCOMPARE(page::label("pop3_l"),
                 "Mail is read and left where it is. A mail that you delete in the Mail Auditor comes back "
                 "at the next fetch as long as the mailbox still holds it.");
        for (const char *name : {"imap_l", "maildir_l", "mbox_l"})
            QVERIFY(!page::label(name).isEmpty());
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
        const auto leave = [by_key] {
            by_key ? QTest::keyClick(&page::field("host_t"), Qt::Key_Escape) : page::press("cancel_b");
        };
        site.boxes.will_say_no();
        leave();
        QVERIFY(is_visible<mail_client_frm>());
        QCOMPARE(page::field("host_t").text(), "mail.shop.example");
        site.boxes.will_say_yes();
        leave();
        QCOMPARE(site.boxes.shown,
                 QStringList(2, "What is typed on this page is not saved yet. Leave it without saving?"));
        QVERIFY(site.boxes.boxes[0].no_is_default);
        QVERIFY(!is_loaded<mail_client_frm>());
        QVERIFY(!site.saved().configured);
        QCOMPARE(site.saved().incoming.host, "");
        QCOMPARE(passwords::read(passwords::of::mailbox), "");
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
        QTRY_COMPARE(page::field("host_t").text(), "imap.shop.example");
        QTRY_COMPARE(QApplication::focusWidget()->objectName(), "ok_b");
        page::type("smtp_host_t", "smtp.shop.example");
        QTest::keyClick(&page::field("smtp_host_t"), Qt::Key_Return);
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
        site.boxes.will_say_yes();
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
            return QAccessible::queryAccessibleInterface(&page::field("password_t"))->text(QAccessible::Value);
        };
        QVERIFY(!spoken().contains(secret));
        QCOMPARE(page::field("password_t").echoMode(), QLineEdit::Password);
        page::tick("show_c");
        QCOMPARE(page::field("password_t").echoMode(), QLineEdit::Normal);
        QVERIFY(!spoken().contains(secret));
        page::type("host_t", "");
        page::press("ok_b");
        QVERIFY(!site.boxes.shown.join(' ').contains(secret));
        QVERIFY(!site.status_lines.join(' ').contains(secret));
        QVERIFY(!QFile::exists(site.file("errorlog.txt")));
    }

    void the_outbox_opens_from_the_page()
    {
        page_site site;
        site.open();
        page::press("outbox_b");
        QVERIFY(is_visible<outbox_frm>());
    }

    void a_narrow_page_stands_in_one_column()
    {
        page_site site;
        site.open();
        auto &left = control<QWidget>(the<mail_client_frm>(), "kind_fr");
        auto &right = control<QWidget>(the<mail_client_frm>(), "sending_fr");
        auto &scroll = control<QScrollArea>(the<mail_client_frm>(), "qt_scroll");
        const auto left_of = [&](const QWidget &part) { return part.mapTo(scroll.widget(), QPoint()).x(); };
        the<mail_client_frm>().resize(1000, 740);
        QTRY_VERIFY(left_of(right) > left_of(left));
        the<mail_client_frm>().resize(480, 400);
        QTRY_COMPARE(left_of(right), left_of(left));
        QTRY_COMPARE(scroll.horizontalScrollBar()->maximum(), 0);
    }
};

QTEST_MAIN(mail_client_frm_test)
#include "mail_client_frm_test.moc"
