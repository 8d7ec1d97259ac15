// A store that refuses to keep what was done: no box can be shown then, nothing is told to be saved, what is typed
// stays, and the program goes on. The screens of signatures, of the preferences and of the setup.
#include "frame/session.h"
#include "platform/outbox.h"
#include "screens/directmail/EditSign.h"
#include "screens/directmail/NewSign.h"
#include "screens/directmail/Signature.h"
#include "screens/frame/Stage1.h"
#include "screens/frame/outbox_frm.h"
#include "screens/list_view.h"
#include "screens/preferences/Format_mail_frm.h"
#include "screens/preferences/Preference.h"
#include "screens/preferences/autoresponder.h"
#include "screens/preferences/page_list.h"
#include "support/refusing_store.h"
#include "support/screens_map_wizard.h"
#include "support/screens_page_site.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QTest>

namespace {

struct kept_signatures : screens_site {
    kept_signatures()
    {
        store.run("insert into sign values( 'Shop','Kind regards','No' )");
        store.run("insert into sign values( 'Private','Yours','Yes' )");
        the<Preference>().show();
        press<Preference>("Command3");
    }
    QListWidget &list() { return control<QListWidget>(the<Signature>(), "List1"); }
};

// Nothing can be written now, the log neither.
QString failed_in()
{
    return session.err_form + "|" + session.err_routine;
}

bool is_told(const QStringList &lines, const QString &beginning)
{
    for (const QString &line : lines)
        if (line.startsWith(beginning) && line.endsWith("The disk is full"))
            return true;
    return false;
}

template <typename T>
QPlainTextEdit &text_of()
{
    return control<QPlainTextEdit>(the<T>(), "Text2");
}

void fill_reply()
{
    the<autoresponder>().show();
    control<QComboBox>(the<autoresponder>(), "mapname_c").setCurrentText("shop");
    type(the<autoresponder>(), "subject_t", "Thank you");
    control<QPlainTextEdit>(the<autoresponder>(), "autocontent_t").setPlainText("We have it.");
}

}

class refused_store_test : public QObject {
    Q_OBJECT
private slots:
    void a_box_of_the_picker_is_logged_and_told_data()
    {
        QTest::addColumn<QByteArray>("command");
        QTest::addColumn<bool>("selected");
        QTest::addColumn<QString>("line");
        QTest::newRow("Edit, nothing selected")
            << QByteArray("Command1") << false << "The signature cannot be changed: ";
        QTest::newRow("Remove, nothing selected")
            << QByteArray("Command2") << false << "The signature could not be removed: ";
        QTest::newRow("Remove, the question")
            << QByteArray("Command2") << true << "The signature could not be removed: ";
        QTest::newRow("OK, nothing selected")
            << QByteArray("Command4") << false << "The signature could not be chosen: ";
    }
    void a_box_of_the_picker_is_logged_and_told()
    {
        QFETCH(QByteArray, command);
        QFETCH(bool, selected);
        QFETCH(QString, line);
        kept_signatures site;
        if (selected)
            site.list().setCurrentRow(0);
        const refusing_store full_disk;
        press<Signature>(command);
        QCOMPARE(site.boxes.shown, QStringList());
        QCOMPARE(failed_in(), QString("Signature.frm|" + command));
        QVERIFY(is_told(site.status_lines, line));
        QVERIFY(is_visible<Signature>());
        QCOMPARE(site.list().count(), 2);
        QCOMPARE(site.rows_of("sign"), 2);
    }

    void a_choice_that_cannot_be_kept_leaves_the_picker_open_and_the_preferences_as_they_were()
    {
        kept_signatures site;
        site.list().setCurrentRow(0);
        const refusing_store full_disk;
        press<Signature>("Command4");
        QVERIFY(is_visible<Signature>());
        QVERIFY(session.signature_for_preferences);
        QCOMPARE(control<QLabel>(the<Preference>(), "sign_l").text(), "Private");
        QCOMPARE(failed_in(), "Signature.frm|Command4");
        QVERIFY(is_told(site.status_lines, "The signature could not be chosen: "));
    }

    void a_new_signature_that_cannot_be_kept_stays_typed()
    {
        kept_signatures site;
        in_modal<NewSign>([&site](NewSign &screen) {
            const refusing_store full_disk;
            text_of<NewSign>().setPlainText("Bye");
            press<NewSign>("Command2");
            QVERIFY(is_visible<NewSign>());
            QCOMPARE(text_of<NewSign>().toPlainText(), "Bye");
            QCOMPARE(site.list().count(), 2);
            QCOMPARE(failed_in(), "NewSign.frm|Command2");
            QVERIFY(is_told(site.status_lines, "The signature could not be kept: "));
            screen.unload();
        });
        press<Signature>("Command3");
    }

    void a_box_of_a_new_signature_is_logged_and_told_data()
    {
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("text");
        QTest::newRow("no title") << ""
                                  << "Bye";
        QTest::newRow("no text") << "Shop 2"
                                 << "";
        QTest::newRow("a title that exists") << "Shop"
                                             << "Bye";
    }
    void a_box_of_a_new_signature_is_logged_and_told()
    {
        QFETCH(QString, title);
        QFETCH(QString, text);
        kept_signatures site;
        in_modal<NewSign>([&](NewSign &screen) {
            const refusing_store full_disk;
            control<QLineEdit>(screen, "Text1").setText(title);
            text_of<NewSign>().setPlainText(text);
            press<NewSign>("Command2");
            QVERIFY(is_visible<NewSign>());
            QCOMPARE(site.boxes.shown, QStringList());
            QCOMPARE(failed_in(), "NewSign.frm|Command2");
            QVERIFY(is_told(site.status_lines, "The signature could not be kept: "));
            screen.unload();
        });
        press<Signature>("Command3");
        QCOMPARE(site.rows_of("sign"), 2);
    }

    void a_changed_signature_stays_typed_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("a text that cannot be kept") << "Bye";
        QTest::newRow("no text, and no box that says so") << "";
    }
    void a_changed_signature_stays_typed()
    {
        QFETCH(QString, text);
        kept_signatures site;
        site.list().setCurrentRow(1);
        in_modal<EditSign>([&](EditSign &screen) {
            const refusing_store full_disk;
            text_of<EditSign>().setPlainText(text);
            press<EditSign>("Command2");
            QVERIFY(is_visible<EditSign>());
            QCOMPARE(text_of<EditSign>().toPlainText(), text);
            QCOMPARE(control<QLabel>(the<Signature>(), "Label2").text(), "Yours");
            QCOMPARE(failed_in(), "Editsign.frm|Command2");
            QVERIFY(is_told(site.status_lines, "The signature could not be changed: "));
            screen.unload();
        });
        press<Signature>("Command1");
    }

    void what_was_typed_for_the_autoresponder_is_kept_when_the_question_cannot_be_asked()
    {
        map_wizard_site site;
        site.store.add_map("shop", site.account, "Order", {{.name = "person"}});
        site.store.add_map("leads", site.account, "Lead", {{.name = "company"}});
        fill_reply();
        const refusing_store full_disk;
        control<QComboBox>(the<autoresponder>(), "mapname_c").setCurrentText("leads");
        QCOMPARE(control<QComboBox>(the<autoresponder>(), "mapname_c").currentText(), "shop");
        QCOMPARE(failed_in(), "autoresponder_frm.frm|mapname_c");
        press<autoresponder>("cancel_b");
        QVERIFY(is_visible<autoresponder>());
        the<autoresponder>().close();
        QVERIFY(is_visible<autoresponder>());
        QTest::keyClick(&the<autoresponder>(), Qt::Key_Escape);
        QVERIFY(is_visible<autoresponder>());
        QCOMPARE(control<QLineEdit>(the<autoresponder>(), "subject_t").text(), "Thank you");
        QCOMPARE(site.boxes.shown, QStringList());
    }

    void an_autoresponder_that_cannot_be_kept_is_not_told_to_be_saved()
    {
        map_wizard_site site;
        site.store.add_map("shop", site.account, "Order", {{.name = "person"}});
        fill_reply();
        {
            const refusing_store full_disk;
            press<autoresponder>("autosubmit_s");
        }
        QCOMPARE(failed_in(), "autoresponder_frm.frm|autosubmit_s");
        QVERIFY(is_told(site.status_lines, "The autoresponder was not saved: "));
        QVERIFY(site.status_lines.filter("is saved").isEmpty());
        site.boxes.will_say_no(); // it is still unsaved
        press<autoresponder>("cancel_b");
        QCOMPARE(site.boxes.shown.size(), 1);
        QVERIFY(is_visible<autoresponder>());
    }

    void minutes_that_cannot_be_kept_are_not_told_to_be_in_force()
    {
        screens_site site;
        the<Preference>().show();
        const QString before = control<QLabel>(the<Preference>(), "in_force_l").text();
        control<QCheckBox>(the<Preference>(), "autofetch_ch").setChecked(true);
        control<QLineEdit>(the<Preference>(), "minutes_t").setText("1");
        const refusing_store full_disk;
        press<Preference>("Command1");
        QCOMPARE(control<QLabel>(the<Preference>(), "in_force_l").text(), before);
        QCOMPARE(control<QLineEdit>(the<Preference>(), "minutes_t").text(), "1");
        QCOMPARE(failed_in(), "Preference.frm|Command1");
        QVERIFY(is_told(site.status_lines, "Auto-fetch could not be set: "));
    }

    void a_page_with_something_typed_stays_when_the_question_cannot_be_asked()
    {
        page_site site;
        site.open();
        type_good_settings();
        const refusing_store full_disk;
        open_page(preference_page::general);
        QVERIFY(is_visible<mail_client_frm>());
        QVERIFY(!is_loaded<Preference>());
        QVERIFY(failed_in().startsWith("mail_client_frm.frm|"));
    }

    void a_fault_of_the_mail_client_page_becomes_a_line()
    {
        page_site site;
        site.open();
        type_good_settings();
        page::type("password_t", "");
        const refusing_store full_disk;
        page::press("ok_b");
        QCOMPARE(site.boxes.shown, QStringList());
        QCOMPARE(failed_in(), "mail_client_frm.frm|ok_b");
        QVERIFY(is_told(site.status_lines, "The password is missing. "));
        QVERIFY(is_visible<mail_client_frm>());
    }

    void a_box_of_the_page_map_mails_becomes_a_line()
    {
        screens_site site;
        the<Format_mail_frm>().show();
        const refusing_store full_disk;
        press<Format_mail_frm>("open_b");
        QCOMPARE(failed_in(), "Format_mail_frm.frm|open_b");
        QVERIFY(is_told(site.status_lines, "Please select a mail "));
    }

    void a_mail_of_the_outbox_is_deleted_only_after_its_question()
    {
        screens_site site;
        outbox::outgoing_mail mail;
        mail.SendingAccount = "shop@shop.example";
        mail.To = QStringList{"ann@mail.example"};
        mail.Subject = "Order 17";
        outbox::hand_over(mail);
        the<outbox_frm>().show();
        control<list_view>(the<outbox_frm>(), "LV_outbox").selectAll();
        {
            const refusing_store full_disk;
            press<outbox_frm>("delete_b");
        }
        QCOMPARE(failed_in(), "outbox_frm.frm|delete_b");
        QCOMPARE(outbox::contents().size(), size_t(1));
        site.boxes.will_say_no();
        press<outbox_frm>("delete_b");
        QVERIFY(site.boxes.boxes.at(0).no_is_default);
        QCOMPARE(outbox::contents().size(), size_t(1));
    }

    void a_setup_with_something_typed_stays_when_the_question_cannot_be_asked()
    {
        screens_site site;
        the<Stage1>().show();
        type(the<Stage1>(), "Admin_t", "Ann");
        const refusing_store full_disk;
        the<Stage1>().close();
        QVERIFY(is_visible<Stage1>());
        QCOMPARE(site.boxes.shown, QStringList());
        QCOMPARE(failed_in(), "setup_screen.frm|leave_setup");
    }

    void a_fault_of_the_setup_becomes_a_line()
    {
        screens_site site;
        the<Stage1>().show();
        const refusing_store full_disk;
        press<Stage1>("next_b");
        QVERIFY(is_visible<Stage1>());
        QCOMPARE(failed_in(), "Stage1.frm|next_b");
    }
};

QTEST_MAIN(refused_store_test)
#include "refused_store_test.moc"
