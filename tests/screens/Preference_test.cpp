// The preferences page "General" through its controls.
#include "frame/session.h"
#include "screens/directmail/Signature.h"
#include "screens/elided_label.h"
#include "screens/frame/menuFrm.h"
#include "screens/kept_font.h"
#include "screens/preferences/Accounts.h"
#include "screens/preferences/OnlinePref.h"
#include "screens/preferences/Preference.h"
#include "screens/preferences/autoresponder.h"
#include "screens/screen.h"
#include "support/screens_driver.h"
#include "support/screens_site.h"
#include "support/scripted_dialogs.h"

#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QToolTip>

namespace {

Preference &page()
{
    return the<Preference>();
}

QCheckBox &autofetch_ch()
{
    return control<QCheckBox>(page(), "autofetch_ch");
}

QLineEdit &minutes_t()
{
    return control<QLineEdit>(page(), "minutes_t");
}

QPushButton &button(const char *name)
{
    return control<QPushButton>(page(), name);
}

QString label(const char *name)
{
    return control<QLabel>(page(), name).text();
}

struct general_site : screens_site {
    QString minutes() { return store.cell("select minutes from autofetch"); }
    void show_with(int minutes)
    {
        store.run("update autofetch set minutes=" + QString::number(minutes));
        page().show();
    }
    void set(const QString &typed)
    {
        autofetch_ch().setChecked(true);
        minutes_t().setText(typed);
        button("Command1").click();
    }
};

}

class Preference_test : public QObject {
    Q_OBJECT
private slots:
    void minus_one_is_shown_as_off_with_0_in_the_box()
    {
        general_site site;
        site.show_with(-1);
        QVERIFY(!autofetch_ch().isChecked());
        QCOMPARE(minutes_t().text(), "0");
        QVERIFY(!minutes_t().isEnabled());
    }

    void any_other_value_is_shown_as_on_data()
    {
        QTest::addColumn<int>("minutes");
        QTest::newRow("one") << 1;
        QTest::newRow("nought, too") << 0;
        QTest::newRow("a value that never fetches") << 15;
    }

    void any_other_value_is_shown_as_on()
    {
        QFETCH(int, minutes);
        general_site site;
        site.show_with(minutes);
        QVERIFY(autofetch_ch().isChecked());
        QCOMPARE(minutes_t().text(), QString::number(minutes));
        QVERIFY(minutes_t().isEnabled());
    }

    void what_is_no_number_is_refused_and_the_stored_value_stays_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::newRow("a letter behind it") << "5x";
        QTest::newRow("a fraction") << "2.5";
        QTest::newRow("above 32767") << "32768";
        QTest::newRow("nothing") << "";
    }

    void what_is_no_number_is_refused_and_the_stored_value_stays()
    {
        QFETCH(QString, typed);
        general_site site;
        site.show_with(7);
        site.set(typed);
        QCOMPARE(site.boxes.shown, QStringList{"Minutes can only be numeric!"});
        QCOMPARE(site.boxes.boxes[0].title, "General");
        QVERIFY(site.boxes.boxes[0].icon == message_icon::critical);
        QCOMPARE(site.minutes(), "7");
        QVERIFY(page().focusWidget() == &minutes_t());
        QCOMPARE(minutes_t().text(), typed); // to be mended
    }

    void nought_and_less_are_refused()
    {
        general_site site;
        site.show_with(7);
        site.set("0");
        site.set("-3");
        QCOMPARE(site.boxes.shown, (QStringList{2, "Minutes should be greater than zero!"}));
        QCOMPARE(site.boxes.boxes[0].title, "General");
        QVERIFY(site.boxes.boxes[0].icon == message_icon::critical);
        QCOMPARE(site.minutes(), "7");
    }

    void an_accepted_number_is_stored_as_it_is()
    {
        general_site site;
        site.show_with(-1);
        site.set("1");
        QCOMPARE(site.minutes(), "1");
        QVERIFY(label("in_force_l").contains("every ten seconds"));
        site.set("30");
        QCOMPARE(site.minutes(), "30");
        QVERIFY(label("in_force_l").contains("not fetched"));
        QCOMPARE(site.boxes.shown, QStringList());
    }

    void the_box_turned_off_stores_minus_one_whatever_is_typed()
    {
        general_site site;
        site.show_with(1);
        minutes_t().setText("5x");
        autofetch_ch().setChecked(false);
        button("Command1").click();
        QCOMPARE(site.minutes(), "-1");
        QCOMPARE(site.boxes.shown, QStringList());
        QCOMPARE(minutes_t().text(), "0");
    }

    void turned_off_here_the_console_stops_fetching()
    {
        general_site site;
        site.store.add_account("orders", "orders@shop.example");
        site.show_with(1);
        menuFrm console;
        site.deliver_mail("orders@shop.example", "First");
        console.Timer1_Timer();
        QCOMPARE(site.rows_of("orders"), 1);
        autofetch_ch().setChecked(false);
        button("Command1").click();
        site.deliver_mail("orders@shop.example", "Second");
        console.Timer1_Timer();
        QCOMPARE(site.rows_of("orders"), 1);
    }

    void the_keyboard_alone_sets_it()
    {
        general_site site;
        site.show_with(-1);
        QVERIFY(page().focusWidget() == &autofetch_ch());
        QTest::keyClick(&autofetch_ch(), Qt::Key_Space);
        QVERIFY(page().focusWidget() == &minutes_t());
        QTest::keyClicks(&minutes_t(), "1"); // over the marked 0
        QTest::keyClick(&minutes_t(), Qt::Key_Return);
        QCOMPARE(site.minutes(), "1");
    }

    void a_screen_reader_turns_it_on()
    {
        general_site site;
        site.show_with(-1);
        QAccessibleInterface *spoken = QAccessible::queryAccessibleInterface(&autofetch_ch());
        spoken->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
        QVERIFY(minutes_t().isEnabled());
        QVERIFY(page().focusWidget() == &minutes_t());
    }

    void the_selected_signature_is_shown()
    {
        general_site site;
        site.store.run("insert into sign values( 'Old','Bye','No' )");
        site.store.run("insert into sign values( 'Shop','Regards','Yes' )");
        page().show();
        QCOMPARE(label("sign_l"), "Shop");
    }

    void without_a_selected_signature_it_says_so()
    {
        general_site site;
        site.store.run("insert into sign values( 'Old','Bye','No' )");
        page().show();
        QCOMPARE(label("sign_l"), "No signature configured/selected");
    }

    void a_table_that_cannot_be_read_is_logged_under_the_pages_name()
    {
        general_site site;
        site.store.run("drop table autofetch");
        page().show();
        QCOMPARE(session.err_form, "Preference.frm");
        QCOMPARE(session.err_routine, "Form_load");
        QCOMPARE(site.boxes.shown, QStringList());
        QCOMPARE(site.status_lines.filter("cannot be shown").size(), 1);
        QVERIFY(!control<QPushButton>(page(), "Command1").isEnabled()); // over what nobody has seen nothing is written
    }

    void setting_auto_fetch_ends_a_pause()
    {
        general_site site;
        session.auto_fetch_pause_s = 40;
        page().show();
        control<QPushButton>(page(), "Command1").click();
        QCOMPARE(session.auto_fetch_pause_s, 0);
    }

    void without_a_row_auto_fetch_is_shown_as_off()
    {
        general_site site;
        site.store.run("delete * from autofetch");
        page().show();
        QVERIFY(!autofetch_ch().isChecked());
        QCOMPARE(minutes_t().text(), "0");
        QCOMPARE(session.err_number, 0u);
        QCOMPARE(label("sign_l"), "No signature configured/selected");
    }

    void without_a_row_to_set_it_says_so()
    {
        general_site site;
        site.store.run("delete * from autofetch");
        page().show();
        site.set("1");
        QCOMPARE(site.status_lines.last(), "Auto-fetch could not be set: the store has no row for it.");
        QVERIFY(label("in_force_l").contains("not fetched"));
        QCOMPARE(minutes_t().text(), "1");
    }

    void a_long_title_is_cut_and_told_whole()
    {
        general_site site;
        const QString title(255, 'W');
        site.store.run("insert into sign values( '" + title + "','Regards','Yes' )");
        page().show();
        auto &shown = control<elided_label>(page(), "sign_l");
        QCOMPARE(shown.text(), title); // as it is spoken
        QVERIFY(shown.is_cut());
        QVERIFY(shown.width() < page().width());
        QHelpEvent over(QEvent::ToolTip, shown.rect().center(), shown.mapToGlobal(shown.rect().center()));
        QApplication::sendEvent(&shown, &over);
        QCOMPARE(QToolTip::text(), "<qt>" + title + "</qt>");
        QToolTip::hideText();
        QVERIFY(!control<elided_label>(page(), "font_l").is_cut());
    }

    void its_buttons_are_called_as_everywhere()
    {
        general_site site;
        page().show();
        const auto caption = [](const char *name) { return button(name).text().remove('&'); };
        QCOMPARE(caption("Command3"), "Configure");
        QCOMPARE(caption("Command4"), "Goto Account Preference");
        QCOMPARE(caption("Command5"), "Goto Label Preference");
        QCOMPARE(caption("Command8"), "Configure Autoresponder");
    }

    void the_programs_font_is_shown_until_one_is_chosen()
    {
        general_site site;
        page().show();
        const QFont usual = QApplication::font();
        QCOMPARE(label("font_l"), usual.family() + " " + QString::number(usual.pointSizeF()) + " pt.");
    }

    void a_chosen_font_is_shown_by_name_and_size_and_kept()
    {
        general_site site;
        scripted_dialogs dialogs;
        page().show();
        dialogs.fonts.push_back(chosen_font{"Liberation Serif", 14, false, true});
        button("Command2").click();
        QCOMPARE(label("font_l"), "Liberation Serif 14 pt.");
        QCOMPARE(dialogs.asked, QStringList{QApplication::font().family()});
        page().unload();
        page().show();
        QCOMPARE(label("font_l"), "Liberation Serif 14 pt.");
        QVERIFY(kept_font() == (chosen_font{"Liberation Serif", 14, false, true}));
    }

    void half_a_point_is_shown()
    {
        QCOMPARE(font_words({"Liberation Sans", 10.5, false, false}), "Liberation Sans 10.5 pt.");
    }

    void a_font_dialog_that_is_cancelled_changes_nothing()
    {
        general_site site;
        scripted_dialogs dialogs;
        page().show();
        const QString before = label("font_l");
        dialogs.fonts.push_back(std::nullopt);
        button("Command2").click();
        QCOMPARE(label("font_l"), before);
        QCOMPARE(kept_font().name, QApplication::font().family());
    }

    void a_text_shown_in_the_kept_font_follows_the_choice()
    {
        general_site site;
        QPlainTextEdit text;
        show_in_kept_font(text);
        keep_font({"Liberation Serif", 15, true, false});
        QCOMPARE(text.font().family(), "Liberation Serif");
        QCOMPARE(text.font().pointSizeF(), 15.0);
        QVERIFY(text.font().bold());
        QPlainTextEdit later;
        show_in_kept_font(later);
        QCOMPARE(later.font().family(), "Liberation Serif");
    }

    void configure_opens_the_picker_and_says_who_asked()
    {
        general_site site;
        page().show();
        button("Command3").click();
        QVERIFY(is_visible<Signature>());
        QVERIFY(session.signature_for_preferences);
        QVERIFY(!session.signature_for_composer);
    }

    void configure_autoresponder_opens_it()
    {
        general_site site;
        page().show();
        button("Command8").click();
        QVERIFY(is_visible<autoresponder>());
        QVERIFY(is_visible<Preference>());
    }

    void the_buttons_lead_to_the_other_pages()
    {
        general_site site;
        page().show();
        button("Command4").click();
        QVERIFY(is_visible<Accounts>());
        QVERIFY(!is_loaded<Preference>());
        the<Accounts>().unload();
        page().show();
        button("Command6").click();
        QVERIFY(is_visible<OnlinePref>());
        QVERIFY(!is_loaded<Preference>());
    }

    void a_page_that_does_not_exist_cannot_be_gone_to()
    {
        general_site site;
        page().show();
        QVERIFY(!button("Command5").isEnabled());
        QCOMPARE(button("Command5").toolTip(), "This page is not there yet.");
    }

    void the_console_opens_it_and_closes_the_page_that_stood_open()
    {
        general_site site;
        menuFrm console;
        console.show();
        control<QAction>(console, "account").trigger();
        control<QAction>(console, "general").trigger();
        QVERIFY(is_visible<Preference>());
        QVERIFY(!is_loaded<Accounts>());
        QCOMPARE(control<QComboBox>(page(), "Combo1").currentText(), "GENERAL");
        control<QAction>(console, "account").trigger();
        QVERIFY(!is_loaded<Preference>());
    }

    void escape_ends_the_page_without_storing()
    {
        general_site site;
        site.show_with(-1);
        autofetch_ch().setChecked(true);
        minutes_t().setText("1");
        site.boxes.will_say_yes();
        QTest::keyClick(&minutes_t(), Qt::Key_Escape);
        QCOMPARE(site.boxes.shown, QStringList{"What was typed here is not saved. Go on without saving?"});
        QVERIFY(!is_loaded<Preference>());
        QCOMPARE(site.minutes(), "-1");
    }
};

QTEST_MAIN(Preference_test)
#include "Preference_test.moc"
