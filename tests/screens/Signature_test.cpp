// The picker of signatures through its controls. A new one, and changing one: signature_entry_test.cpp.
#include "frame/session.h"
#include "support/screens_signatures.h"

#include <QImage>
#include <QTest>

class Signature_test : public QObject {
    Q_OBJECT
private slots:
    void the_picker_lists_all_titles()
    {
        signature_site site;
        picker().show();
        QCOMPARE(picker().windowTitle(), "Signature Picker.");
        QCOMPARE(titles(), (QStringList{"Shop", "Private"}));
        QCOMPARE(preview(), "No Preview Available.");
    }

    void a_click_shows_the_text()
    {
        signature_site site;
        picker().show();
        List1().setCurrentRow(1);
        QCOMPARE(preview(), "Yours");
        List1().setCurrentRow(0);
        QCOMPARE(preview(), "Kind regards");
    }

    void a_title_with_an_apostrophe_is_found()
    {
        signature_site site;
        site.store.run("insert into sign values( 'Zoe''s','Hello','No' )");
        picker().show();
        List1().setCurrentRow(2);
        QCOMPARE(preview(), "Hello");
    }

    void without_a_selection_each_command_says_what_to_do_data()
    {
        QTest::addColumn<QByteArray>("command");
        QTest::addColumn<QString>("words");
        QTest::newRow("Edit") << QByteArray("Command1") << "Select an item from the list and click Edit.";
        QTest::newRow("Remove") << QByteArray("Command2") << "Select an item from the list and click Remove.";
        QTest::newRow("OK") << QByteArray("Command4") << "Select an item from the list and click OK.";
    }

    void without_a_selection_each_command_says_what_to_do()
    {
        QFETCH(QByteArray, command);
        signature_site site;
        picker().show();
        press(command);
        QTEST(site.boxes.shown.join('|'), "words");
        QCOMPARE(site.box().title, "Error.");
        QVERIFY(site.box().icon == message_icon::critical);
        QVERIFY(is_visible<Signature>());
        QCOMPARE(site.selected(), "Private");
        QCOMPARE(titles().size(), 2);
    }

    void remove_asks_and_takes_the_row_the_entry_and_the_preview()
    {
        signature_site site;
        picker().show();
        List1().setCurrentRow(0);
        site.boxes.will_say_yes();
        press("Command2");
        QCOMPARE(site.boxes.shown, QStringList{"The Signature titled Shop will be removed."});
        QCOMPARE(site.box().title, "Confirm.");
        QVERIFY(site.box().kind == message_kind::ok_cancel);
        QCOMPARE(titles(), QStringList{"Private"});
        QCOMPARE(preview(), "");
        QCOMPARE(site.rows_of("sign"), 1);
        press("Command2"); // the next one did not become the selected one
        QCOMPARE(site.boxes.shown.last(), "Select an item from the list and click Remove.");
    }

    void remove_that_is_cancelled_takes_nothing()
    {
        signature_site site;
        picker().show();
        List1().setCurrentRow(0);
        site.boxes.will_say_no();
        press("Command2");
        QCOMPARE(site.rows_of("sign"), 2);
        QCOMPARE(titles().size(), 2);
        QCOMPARE(preview(), "Kind regards");
    }

    void removing_the_selected_signature_leaves_none_selected()
    {
        preferences_site site;
        QCOMPARE(site.label(), "Private");
        List1().setCurrentRow(1);
        site.boxes.will_say_yes();
        press("Command2");
        QCOMPARE(site.selected(), "");
        the<Preference>().unload();
        the<Preference>().show();
        QCOMPARE(site.label(), "No signature configured/selected");
    }

    void ok_selects_one_and_only_one_and_tells_the_preferences()
    {
        preferences_site site;
        List1().setCurrentRow(0);
        press("Command4");
        QCOMPARE(site.row("Shop"), "Kind regards|Yes");
        QCOMPARE(site.row("Private"), "Yours|No");
        QCOMPARE(site.label(), "Shop");
        QVERIFY(!session.signature_for_preferences);
        QVERIFY(!is_loaded<Signature>());
    }

    void a_chosen_signature_without_a_title_is_no_missing_one()
    {
        preferences_site site;
        site.store.run("insert into sign values( '','Bye','No' )");
        picker().unload();
        control<QPushButton>(the<Preference>(), "Command3").click();
        List1().setCurrentRow(2);
        press("Command4");
        QCOMPARE(site.row(""), "Bye|Yes");
        QCOMPARE(site.label(), "");
        the<Preference>().unload();
        the<Preference>().show();
        QCOMPARE(site.label(), "");
    }

    void cancel_says_none_is_selected_though_the_store_keeps_it()
    {
        preferences_site site;
        List1().setCurrentRow(0);
        press("Command5");
        QCOMPARE(site.label(), "No signature configured/selected");
        QCOMPARE(site.selected(), "Private");
        QVERIFY(!session.signature_for_preferences);
        QVERIFY(!is_loaded<Signature>());
        the<Preference>().unload();
        the<Preference>().show();
        QCOMPARE(site.label(), "Private");
    }

    void escape_and_the_windows_cross_are_cancel_data()
    {
        QTest::addColumn<bool>("by_key");
        QTest::newRow("Escape") << true;
        QTest::newRow("the cross") << false;
    }

    void escape_and_the_windows_cross_are_cancel()
    {
        QFETCH(bool, by_key);
        preferences_site site;
        session.signature_for_composer = true;
        if (by_key)
            QTest::keyClick(&List1(), Qt::Key_Escape);
        else
            picker().close();
        QCOMPARE(site.label(), "No signature configured/selected");
        QVERIFY(!session.signature_for_preferences);
        QVERIFY(!session.signature_for_composer);
        QVERIFY(!is_loaded<Signature>());
    }

    void a_picker_that_the_composer_opened_leaves_the_preferences_alone()
    {
        signature_site site;
        the<Preference>().show();
        session.signature_for_composer = true;
        picker().show();
        List1().setCurrentRow(0);
        press("Command4");
        QCOMPARE(preferences_site::label(), "Private");
        QCOMPARE(site.selected(), "Shop");
        QVERIFY(!session.signature_for_composer);
    }

    void with_the_preferences_closed_meanwhile_ok_selects_all_the_same()
    {
        preferences_site site;
        the<Preference>().unload();
        List1().setCurrentRow(0);
        press("Command4");
        QCOMPARE(site.selected(), "Shop");
        QVERIFY(!is_loaded<Preference>());
    }

    void the_list_shows_which_one_is_in_use()
    {
        signature_site site;
        picker().show();
        QVERIFY(!List1().item(0)->font().bold());
        QVERIFY(List1().item(1)->font().bold());
        QCOMPARE(List1().item(1)->data(Qt::AccessibleTextRole).toString(), "Private, chosen");
        QCOMPARE(List1().item(1)->text(), "Private");
    }

    void a_list_without_signatures_says_what_to_do()
    {
        signature_site site;
        site.store.run("delete from sign");
        picker().show();
        const auto ink = [] { // in the middle: a line of the list stands above it
            const QImage seen = List1().viewport()->grab().toImage();
            int count = 0;
            for (int y = seen.height() / 3; y < seen.height() * 2 / 3; ++y)
                for (int x = 0; x < seen.width(); ++x)
                    count += seen.pixel(x, y) != seen.pixel(0, seen.height() - 1);
            return count;
        };
        QVERIFY(ink() > 0);
        picker().add_title("");
        QCOMPARE(ink(), 0);
    }

    void failures_of_the_picker_are_logged_and_told()
    {
        signature_site site;
        picker().show();
        List1().setCurrentRow(0);
        site.store.run("drop table sign");
        List1().setCurrentRow(1);
        QCOMPARE(site.last_logged(), "Signature.frm|List1");
        QVERIFY(site.status_lines.last().startsWith("The signature cannot be shown: "));
        site.boxes.will_say_yes();
        press("Command2");
        QCOMPARE(site.last_logged(), "Signature.frm|Command2");
        QVERIFY(site.status_lines.last().startsWith("The signature could not be removed: "));
        QCOMPARE(titles().size(), 2);
        press("Command4");
        QCOMPARE(site.last_logged(), "Signature.frm|Command4");
        QVERIFY(site.status_lines.last().startsWith("The signature could not be chosen: "));
        QVERIFY(is_visible<Signature>());
        picker().unload();
        picker().show();
        QCOMPARE(site.last_logged(), "Signature.frm|Form_load");
        QVERIFY(site.status_lines.last().startsWith("The signatures cannot be shown: "));
    }
};

QTEST_MAIN(Signature_test)
#include "Signature_test.moc"
