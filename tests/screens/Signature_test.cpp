// The three screens of signatures through their controls: the picker, a new one, and changing one.
#include "frame/session.h"
#include "screens/directmail/EditSign.h"
#include "screens/directmail/NewSign.h"
#include "screens/directmail/Signature.h"
#include "screens/preferences/Preference.h"
#include "screens/screen.h"
#include "support/screens_driver.h"
#include "support/screens_site.h"

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>

namespace {

Signature &picker()
{
    return the<Signature>();
}

QListWidget &List1()
{
    return control<QListWidget>(picker(), "List1");
}

QString preview()
{
    return control<QLabel>(picker(), "Label2").text();
}

void press(const char *name)
{
    control<QPushButton>(picker(), name).click();
}

template <typename T>
void press_on(const char *name)
{
    control<QPushButton>(the<T>(), name).click();
}

QStringList titles()
{
    QStringList texts;
    for (int row = 0; row < List1().count(); ++row)
        texts += List1().item(row)->text();
    return texts;
}

// What happens in the modal screen that the press opens; ends it when it is still there afterwards.
template <typename T>
bool in_modal(const char *opener, const std::function<void()> &deeds)
{
    bool was_open = false;
    QTimer::singleShot(0, [&] {
        was_open = is_visible<T>() && QApplication::activeModalWidget();
        if (was_open)
            deeds();
        if (is_loaded<T>())
            the<T>().unload();
    });
    press(opener);
    return was_open;
}

struct signature_site : screens_site {
    signature_site()
    {
        store.run("insert into sign values( 'Shop','Kind regards','No' )");
        store.run("insert into sign values( 'Private','Yours','Yes' )");
    }
    QString row(const QString &title)
    {
        return store.cell("select signtext from sign where signtitle='" + title + "'") + "|" +
               store.cell("select signselected from sign where signtitle='" + title + "'");
    }
    QString selected() { return store.cell("select signtitle from sign where signselected='Yes'"); }
    message_box box(size_t number = 0) { return boxes.boxes.at(number); }
};

// The picker as the preferences open it.
struct preferences_site : signature_site {
    preferences_site()
    {
        the<Preference>().show();
        control<QPushButton>(the<Preference>(), "Command3").click();
    }
    static QString label() { return control<QLabel>(the<Preference>(), "sign_l").text(); }
};

}

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

    void a_new_one_is_preset_untitled()
    {
        signature_site site;
        picker().show();
        QVERIFY(in_modal<NewSign>("Command3", [] {
            QCOMPARE(QApplication::activeModalWidget()->windowTitle(), "Create New Signature.");
            QCOMPARE(control<QLineEdit>(the<NewSign>(), "Text1").text(), "Untitled");
            QCOMPARE(control<QPlainTextEdit>(the<NewSign>(), "Text2").toPlainText(), "");
        }));
    }

    void finish_speaks_about_the_title_first_then_about_the_text()
    {
        signature_site site;
        picker().show();
        QVERIFY(in_modal<NewSign>("Command3", [] {
            control<QLineEdit>(the<NewSign>(), "Text1").clear();
            press_on<NewSign>("Command2");
            control<QLineEdit>(the<NewSign>(), "Text1").setText("Shop");
            press_on<NewSign>("Command2");
        }));
        QCOMPARE(site.boxes.shown,
                 (QStringList{"Title of the Signature must be specified.", "Please enter signature"}));
        QCOMPARE(site.box(0).title, "Title.");
        QCOMPARE(site.box(1).title, "Title.");
        QCOMPARE(site.rows_of("sign"), 2);
    }

    void a_title_that_exists_is_refused_whatever_its_case_and_blanks()
    {
        signature_site site;
        picker().show();
        QVERIFY(in_modal<NewSign>("Command3", [] {
            control<QLineEdit>(the<NewSign>(), "Text1").setText("  SHOP ");
            control<QPlainTextEdit>(the<NewSign>(), "Text2").setPlainText("Bye");
            press_on<NewSign>("Command2");
            QVERIFY(is_visible<NewSign>());
        }));
        QCOMPARE(site.boxes.shown, QStringList{"The Signature with the Title SHOP already exists."});
        QCOMPARE(site.box().title, "Error.");
        QCOMPARE(site.rows_of("sign"), 2);
        QCOMPARE(site.row("Shop"), "Kind regards|No");
    }

    void a_new_one_is_in_the_list_and_never_selected_by_being_made()
    {
        signature_site site;
        picker().show();
        QVERIFY(in_modal<NewSign>("Command3", [] {
            control<QLineEdit>(the<NewSign>(), "Text1").setText(" Zoe's ");
            control<QPlainTextEdit>(the<NewSign>(), "Text2").setPlainText("Bye\u00a0all\nZoe");
            press_on<NewSign>("Command2");
            QVERIFY(!is_loaded<NewSign>());
        }));
        QCOMPARE(site.boxes.shown, QStringList());
        QCOMPARE(titles(), (QStringList{"Shop", "Private", "Zoe's"}));
        QCOMPARE(site.row("Zoe''s"), "Bye\u00a0all\r\nZoe|No");
        QCOMPARE(site.selected(), "Private");
    }

    void a_title_of_blanks_passes_and_is_stored_trimmed_to_nothing()
    {
        signature_site site;
        picker().show();
        QVERIFY(in_modal<NewSign>("Command3", [] {
            control<QLineEdit>(the<NewSign>(), "Text1").setText("   ");
            control<QPlainTextEdit>(the<NewSign>(), "Text2").setPlainText("Bye");
            press_on<NewSign>("Command2");
        }));
        QCOMPARE(site.boxes.shown, QStringList());
        QCOMPARE(site.row(""), "Bye|No");
        QCOMPARE(titles(), (QStringList{"Shop", "Private", ""}));
        List1().setCurrentRow(2);
        QCOMPARE(preview(), "Bye");
        press("Command4"); // an empty title can be chosen, too
        QCOMPARE(site.row(""), "Bye|Yes");
    }

    void clear_empties_the_text_only()
    {
        signature_site site;
        picker().show();
        QVERIFY(in_modal<NewSign>("Command3", [] {
            control<QPlainTextEdit>(the<NewSign>(), "Text2").setPlainText("Bye");
            press_on<NewSign>("Command1");
            QCOMPARE(control<QPlainTextEdit>(the<NewSign>(), "Text2").toPlainText(), "");
            QCOMPARE(control<QLineEdit>(the<NewSign>(), "Text1").text(), "Untitled");
        }));
        List1().setCurrentRow(0);
        QVERIFY(in_modal<EditSign>("Command1", [] {
            press_on<EditSign>("Command1");
            QCOMPARE(control<QPlainTextEdit>(the<EditSign>(), "Text2").toPlainText(), "");
            QCOMPARE(control<QLineEdit>(the<EditSign>(), "Text1").text(), "Shop");
        }));
    }

    void cancel_of_a_new_one_keeps_nothing()
    {
        signature_site site;
        picker().show();
        QVERIFY(in_modal<NewSign>("Command3", [] {
            control<QPlainTextEdit>(the<NewSign>(), "Text2").setPlainText("Bye");
            press_on<NewSign>("Command3");
            QVERIFY(!is_loaded<NewSign>());
        }));
        QCOMPARE(site.rows_of("sign"), 2);
    }

    void a_failure_of_finish_is_logged()
    {
        signature_site site;
        picker().show();
        site.store.run("drop table sign");
        QVERIFY(in_modal<NewSign>("Command3", [] {
            control<QPlainTextEdit>(the<NewSign>(), "Text2").setPlainText("Bye");
            press_on<NewSign>("Command2");
        }));
        QCOMPARE(session.err_form, "NewSign.frm");
        QCOMPARE(session.err_routine, "Command2");
    }

    void edit_shows_title_and_text_and_the_title_stays()
    {
        signature_site site;
        picker().show();
        List1().setCurrentRow(1);
        QVERIFY(in_modal<EditSign>("Command1", [] {
            QCOMPARE(QApplication::activeModalWidget()->windowTitle(), "Signature");
            QCOMPARE(control<QLineEdit>(the<EditSign>(), "Text1").text(), "Private");
            QVERIFY(control<QLineEdit>(the<EditSign>(), "Text1").isReadOnly());
            QCOMPARE(control<QPlainTextEdit>(the<EditSign>(), "Text2").toPlainText(), "Yours");
        }));
    }

    void update_stores_the_trimmed_text_and_shows_it()
    {
        signature_site site;
        picker().show();
        List1().setCurrentRow(1);
        QVERIFY(in_modal<EditSign>("Command1", [] {
            control<QPlainTextEdit>(the<EditSign>(), "Text2").setPlainText("  Yours, Zoe's shop ");
            press_on<EditSign>("Command2");
            QVERIFY(!is_loaded<EditSign>());
        }));
        QCOMPARE(site.row("Private"), "Yours, Zoe's shop|Yes");
        QCOMPARE(site.row("Shop"), "Kind regards|No");
        QCOMPARE(preview(), "Yours, Zoe's shop");
    }

    void update_refuses_a_text_of_blanks_and_goes_there()
    {
        signature_site site;
        picker().show();
        List1().setCurrentRow(1);
        QVERIFY(in_modal<EditSign>("Command1", [] {
            control<QPlainTextEdit>(the<EditSign>(), "Text2").setPlainText("   ");
            control<QPushButton>(the<EditSign>(), "Command2").setFocus();
            press_on<EditSign>("Command2");
            QVERIFY(is_visible<EditSign>());
            QVERIFY(the<EditSign>().focusWidget() == &control<QPlainTextEdit>(the<EditSign>(), "Text2"));
        }));
        QCOMPARE(site.boxes.shown, QStringList{"Please enter signature"});
        QCOMPARE(site.row("Private"), "Yours|Yes");
    }

    void lines_are_stored_with_both_letters_of_their_end_and_shown_as_lines()
    {
        signature_site site;
        site.store.run("update sign set signtext='Yours\u00a0all\r\nZoe' where signtitle='Private'");
        site.store.run("update sign set signtext='Yours\u00a0all\nZoe' where signtitle='Shop'");
        picker().show();
        auto &label = control<QLabel>(picker(), "Label2");
        List1().setCurrentRow(0);
        const int two_lines_high = label.heightForWidth(400);
        List1().setCurrentRow(1);
        QCOMPARE(label.heightForWidth(400), two_lines_high);
        QVERIFY(in_modal<EditSign>("Command1", [] {
            auto &text = control<QPlainTextEdit>(the<EditSign>(), "Text2");
            QCOMPARE(text.blockCount(), 2);
            text.appendPlainText("Bath");
            press_on<EditSign>("Command2");
        }));
        QCOMPARE(site.row("Private"), "Yours\u00a0all\r\nZoe\r\nBath|Yes");
        QCOMPARE(preview(), "Yours\u00a0all\r\nZoe\r\nBath");
    }

    void leaving_otherwise_than_by_cancel_asks_once_when_something_was_typed_data()
    {
        QTest::addColumn<bool>("is_new");
        QTest::addColumn<bool>("by_key");
        QTest::newRow("a new one, Escape") << true << true;
        QTest::newRow("a new one, the cross") << true << false;
        QTest::newRow("another text, Escape") << false << true;
        QTest::newRow("another text, the cross") << false << false;
    }

    void leaving_otherwise_than_by_cancel_asks_once_when_something_was_typed()
    {
        QFETCH(bool, is_new);
        QFETCH(bool, by_key);
        signature_site site;
        picker().show();
        List1().setCurrentRow(1);
        const auto is_open = [is_new] { return is_new ? is_visible<NewSign>() : is_visible<EditSign>(); };
        const auto deeds = [&] {
            QWidget *frame = QApplication::activeModalWidget();
            const auto leave = [&] { by_key ? QTest::keyClick(frame, Qt::Key_Escape) : void(frame->close()); };
            control<QPlainTextEdit>(*frame, "Text2").setPlainText("Bye");
            site.boxes.will_say_no();
            leave();
            QVERIFY(is_open());
            QCOMPARE(control<QPlainTextEdit>(*frame, "Text2").toPlainText(), "Bye");
            site.boxes.will_say_yes();
            leave();
            QVERIFY(!is_open());
        };
        QVERIFY(is_new ? in_modal<NewSign>("Command3", deeds) : in_modal<EditSign>("Command1", deeds));
        QCOMPARE(site.boxes.shown, QStringList(2, "What was typed here is not saved. Go on without saving?"));
        QCOMPARE(site.row("Private"), "Yours|Yes");
        QCOMPARE(site.rows_of("sign"), 2);
    }

    void leaving_asks_nothing_where_nothing_was_typed()
    {
        signature_site site;
        picker().show();
        List1().setCurrentRow(1);
        const auto escape = [] { QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape); };
        QVERIFY(in_modal<NewSign>("Command3", [&] {
            escape();
            QVERIFY(!is_loaded<NewSign>());
        }));
        QVERIFY(in_modal<EditSign>("Command1", [&] {
            escape();
            QVERIFY(!is_loaded<EditSign>());
        }));
        QCOMPARE(site.boxes.shown, QStringList());
    }

    void failures_of_edit_are_logged()
    {
        signature_site site;
        picker().show();
        List1().setCurrentRow(1);
        site.store.run("drop table sign");
        QString load_failure;
        QVERIFY(in_modal<EditSign>("Command1", [&load_failure] {
            load_failure = session.err_form + "|" + session.err_routine;
            control<QPlainTextEdit>(the<EditSign>(), "Text2").setPlainText("Bye");
            press_on<EditSign>("Command2");
        }));
        QCOMPARE(load_failure, "Editsign.frm|Form_load");
        QCOMPARE(session.err_form, "Editsign.frm");
        QCOMPARE(session.err_routine, "Command2");
    }

    void the_selection_survives_editing_and_enter_is_ok()
    {
        signature_site site;
        picker().show();
        List1().setCurrentRow(0);
        QVERIFY(in_modal<EditSign>("Command1", [] { press_on<EditSign>("Command3"); }));
        QTest::keyClick(&List1(), Qt::Key_Return);
        QCOMPARE(site.selected(), "Shop");
        QVERIFY(!is_loaded<Signature>());
    }
};

QTEST_MAIN(Signature_test)
#include "Signature_test.moc"
