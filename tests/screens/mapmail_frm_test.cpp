// "MapMail": the fields of a saved map one at a time, their tests, and the summary map.txt. Its companions:
// Ignore_test.cpp, fcodes_frm_test.cpp.
#include "frame/session.h"
#include "platform/text_file.h"
#include "platform/winopen.h"
#include "screens/exact_text.h"
#include "screens/preferences/Accounts.h"
#include "screens/preferences/Format_mail_frm.h"
#include "support/failing_messages.h"
#include "support/screens_classic_map.h"

#include <QCheckBox>
#include <QClipboard>
#include <QDir>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QLineEdit>

namespace {

QString text_of(const mapmail_frm &screen, const char *name)
{
    return control<QLineEdit>(screen, name).text();
}

QString entry_of(const mapmail_frm &screen, const char *name)
{
    return control<QComboBox>(screen, name).currentText();
}

}

class mapmail_frm_test : public QObject {
    Q_OBJECT
private slots:
    void the_separators_are_four_behind_a_heading()
    {
        classic_site site;
        const auto &list = control<QComboBox>(site.screen(), "separator_c");
        QStringList captions;
        for (int entry = 0; entry < list.count(); ++entry)
            captions += list.itemText(entry);
        QCOMPARE(captions, (QStringList{"Separator", "Line", "Colon(:)", "Comma(,)", "Semi-colon(;)"}));
    }

    void choosing_a_separator_fills_the_positions()
    {
        classic_site site;
        mapmail_frm &screen = site.screen();
        classic_site::choose(screen, "separator_c", "Line");
        QCOMPARE(control<QComboBox>(screen, "Line_c").count(), 3);
        QCOMPARE(entry_of(screen, "Line_c"), "Line1");
        QCOMPARE(text_of(screen, "Text2"), "Name: Zoe");
        classic_site::choose(screen, "separator_c", "Colon(:)");
        QCOMPARE(control<QComboBox>(screen, "Line_c").count(), 4);
        QCOMPARE(control<QComboBox>(screen, "Line_c").itemText(3), "Line4");
    }

    void choosing_a_map_loads_its_fields_and_its_separator()
    {
        classic_site site;
        mapmail_frm &screen = site.screen_with_map();
        QCOMPARE(entry_of(screen, "separator_c"), "Line");
        QCOMPARE(text_of(screen, "field_t"), "first_name");
        QCOMPARE(entry_of(screen, "Line_c"), "Line1");
        QVERIFY(control<QCheckBox>(screen, "dont_ch").isChecked());
        QCOMPARE(screen.ignored_texts(), (QStringList{"Name:", "!"}));
        QVERIFY(!control<QCheckBox>(screen, "code_ch").isChecked());
        QVERIFY(!control<QPushButton>(screen, "Prev_b").isEnabled());
    }

    void next_and_previous_walk_the_fields_with_their_codes()
    {
        classic_site site;
        mapmail_frm &screen = site.screen_with_map();
        press_in(screen, "next_b");
        QCOMPARE(text_of(screen, "field_t"), "city");
        QVERIFY(!control<QCheckBox>(screen, "dont_ch").isChecked());
        QCOMPARE(screen.code().type, "fixed");
        QCOMPARE(screen.code().descriptions, (QStringList{"Bonn", "Paris"}));
        QCOMPARE(screen.code().codes, (QStringList{"B", "P"}));
        press_in(screen, "next_b");
        QCOMPARE(text_of(screen, "field_t"), "ticket");
        QCOMPARE(screen.code().type, "dynamic");
        press_in(screen, "next_b");
        QCOMPARE(text_of(screen, "field_t"), QString()); // a new one
        press_in(screen, "Prev_b");
        QCOMPARE(text_of(screen, "field_t"), "ticket");
        QCOMPARE(site.screens.boxes.shown, QStringList());
    }

    void next_tests_name_code_name_again_position_in_this_order()
    {
        classic_site site;
        mapmail_frm &screen = site.screen_with_map();
        for (int field = 0; field < 3; ++field)
            press_in(screen, "next_b");
        auto &name = control<QLineEdit>(screen, "field_t");
        name.setText("First Name");
        control<QCheckBox>(screen, "code_ch").setChecked(true);
        press_in(screen, "next_b");
        name.setText("CITY");
        press_in(screen, "next_b");
        control<QCheckBox>(screen, "code_ch").setChecked(false);
        press_in(screen, "next_b");
        name.setText("town");
        control<QComboBox>(screen, "Line_c").setCurrentText("Line2");
        press_in(screen, "next_b");
        QCOMPARE(site.screens.boxes.shown,
                 (QStringList{"Please define field names without the following characters -, +, %, !, (, ),*,/",
                              "Add code values", "This field has been added earlier.",
                              "This position has been selected earlier."}));
        QCOMPARE(text_of(screen, "field_t"), "town");
    }

    void a_reserved_word_is_no_obstacle_here()
    {
        classic_site site;
        mapmail_frm &screen = site.screen();
        classic_site::choose(screen, "separator_c", "Line");
        control<QLineEdit>(screen, "field_t").setText("Name");
        press_in(screen, "next_b");
        QCOMPARE(site.screens.boxes.shown, QStringList());
        press_in(screen, "Prev_b");
        QCOMPARE(text_of(screen, "field_t"), "Name");
    }

    void selected_text_is_copied_and_pasted_into_the_name()
    {
        classic_site site;
        mapmail_frm &screen = site.screen();
        QVERIFY(!control<QPushButton>(screen, "Command5").isEnabled());
        control<exact_text>(screen, "Text1").select({0, 4});
        QVERIFY(control<QPushButton>(screen, "Command5").isEnabled());
        press_in(screen, "Command5");
        QVERIFY(!control<QPushButton>(screen, "Command5").isEnabled());
        press_in(screen, "Command7");
        QCOMPARE(text_of(screen, "field_t"), "Name");
        QVERIFY(!control<QPushButton>(screen, "Command7").isEnabled());
    }

    void a_fixed_code_without_values_stops_the_walk()
    {
        classic_site site;
        site.screens.store.run("delete from fcodes_tbl");
        mapmail_frm &screen = site.screen_with_map();
        press_in(screen, "next_b");
        press_in(screen, "next_b");
        QCOMPARE(site.screens.boxes.shown, QStringList{"Add code values"});
        QCOMPARE(text_of(screen, "field_t"), "city");
    }

    void maps_made_meanwhile_are_listed_by_open()
    {
        classic_site site;
        mapmail_frm &screen = site.screen();
        QCOMPARE(control<QComboBox>(screen, "sformats_c").count(), 2);
        site.screens.store.add_map("buyers", site.screens.store.cell("select id from email_tbl").toLongLong(), "Order",
                                   {{"first_name"}});
        press_in(screen, "open_b");
        QCOMPARE(control<QComboBox>(screen, "sformats_c").count(), 3);
        QCOMPARE(control<QComboBox>(screen, "sformats_c").itemText(2), "buyers");
    }

    void another_separator_leaves_the_field_its_position()
    {
        classic_site site;
        mapmail_frm &screen = site.screen_with_map();
        press_in(screen, "next_b");
        classic_site::choose(screen, "separator_c", "Comma(,)");
        QCOMPARE(entry_of(screen, "Line_c"), "Line2");
        press_in(screen, "Prev_b");
        QCOMPARE(entry_of(screen, "Line_c"), "Line1");
        QCOMPARE(control<QComboBox>(screen, "Line_c").count(), 1);
    }

    void a_summary_that_nothing_shows_is_told_of()
    {
        classic_site site;
        mapmail_frm &screen = site.screen_with_map();
        site.screens.boxes.will_say_no();
        press_in(screen, "save_b");
        QCOMPARE(site.screens.status_lines.last(), "The summary is in " + site.screens.file("map.txt") + ".");
    }

    void closing_leaves_one_page_open_and_on_the_same_account()
    {
        classic_site site;
        mapmail_frm &screen = site.screen();
        the<Accounts>().show();
        press_in(screen, "Command2");
        QVERIFY(!is_loaded<Accounts>());
        QVERIFY(is_visible<Format_mail_frm>());
        QCOMPARE(control<QComboBox>(the<Format_mail_frm>(), "query_c").currentText(), "orders");
    }

    void the_summary_wants_a_field()
    {
        classic_site site;
        press_in(site.screen(), "save_b");
        QCOMPARE(site.screens.boxes.shown, QStringList{"Please select format"});
        QVERIFY(!FileExists(site.screens.file("map.txt")));
    }

    void the_summary_is_written_shown_and_asked_about_and_no_map_is_touched()
    {
        classic_site site;
        Write(site.screens.file("map.txt"), "what stood there before");
        QStringList opened;
        set_winopen([&opened](const QString &path) {
            opened += path;
            return true;
        });
        mapmail_frm &screen = site.screen_with_map();
        const auto rows = site.screens.store.column("select fname from format_tbl");
        site.screens.boxes.will_say_yes();
        press_in(screen, "save_b");
        set_winopen({});
        QCOMPARE(site.screens.boxes.shown, QStringList{"Save this format"});
        QCOMPARE(opened, QStringList{site.screens.file("map.txt")});
        QCOMPARE(ReadAll(site.screens.file("map.txt")),
                 "Enclosed are the set of fields mapped to account query orders\r\n"
                 "Line no     Field name      Doesnt include     Ignore       Code field\r\n"
                 "                                  field name \r\n"
                 "**************************************************************************\r\n"
                 "Line1       first_name       Yes                Name:,!          No\r\n"
                 "Line2       city             No                                  No\r\n"
                 "Line3       ticket           Yes                No:              Yes\r\n");
        QCOMPARE(site.screens.store.column("select fname from format_tbl"), rows);
        QCOMPARE(site.screens.rows_of("table_list_tbl"), 1);
    }

    void yes_to_saving_says_who_saves_maps()
    {
        classic_site site;
        mapmail_frm &screen = site.screen_with_map();
        site.screens.boxes.will_say_yes();
        press_in(screen, "save_b");
        QCOMPARE(site.screens.status_lines.last(),
                 "No map was changed: the Mail Mapping Wizard alone saves maps. The summary is in " +
                     site.screens.file("map.txt") + ".");
    }

    void the_test_of_the_name_trims_it_in_its_box()
    {
        classic_site site;
        mapmail_frm &screen = site.screen_with_map();
        control<QLineEdit>(screen, "field_t").setText("  city ");
        press_in(screen, "next_b");
        QCOMPARE(site.screens.boxes.shown, QStringList{"This field has been added earlier."});
        QCOMPARE(text_of(screen, "field_t"), "city");
    }

    void a_mail_of_a_million_line_ends_stays_usable()
    {
        classic_site site;
        site.screens.store.run("update orders set tsl_body='" + QString("\r\n").repeated(1000000) + "'");
        QElapsedTimer clock;
        clock.start();
        mapmail_frm &screen = site.screen_with_map();
        auto &positions = control<QComboBox>(screen, "Line_c");
        QCOMPARE(positions.count(), 1000001);
        for (int walk = 0; walk < 10; ++walk) {
            press_in(screen, "next_b");
            press_in(screen, "Prev_b");
        }
        positions.setCurrentIndex(1000000);
        positions.showPopup();
        positions.hidePopup();
        QCOMPARE(positions.currentText(), "Line1000001");
        QVERIFY2(clock.elapsed() < 30000, qPrintable(QString::number(clock.elapsed())));
    }

    void a_map_of_another_separator_is_shown_though_the_list_lacks_it()
    {
        classic_site site;
        site.screens.store.run("update table_list_tbl set seperator='.' where table_name='clients'");
        mapmail_frm &screen = site.screen_with_map();
        QCOMPARE(entry_of(screen, "separator_c"), "Separator");
        QCOMPARE(text_of(screen, "field_t"), "first_name");
        press_in(screen, "next_b");
        QCOMPARE(entry_of(screen, "Line_c"), "Line2"); // the mail has no such piece: the position is shown all the same
        QCOMPARE(text_of(screen, "Text2"), QString());
    }

    void what_fails_is_logged_under_its_words_data()
    {
        QTest::addColumn<QString>("lost_table");
        QTest::addColumn<QString>("logged");
        QTest::newRow("the mail, on loading") << "orders"
                                              << "Mapmail_frm.frm|Form_load";
        QTest::newRow("the maps of the account") << "table_list_tbl"
                                                 << "mapmailfrm|openbclick";
        QTest::newRow("the fields of a map") << "format_tbl"
                                             << "Mapmail_frm.frm|sformats_c_Click";
        QTest::newRow("the codes of a field") << "fcodes_tbl"
                                              << "Mapmail_frm.frm|sformats_c_Click";
    }

    void what_fails_is_logged_under_its_words()
    {
        QFETCH(QString, lost_table);
        QFETCH(QString, logged);
        classic_site site;
        site.screens.store.run("drop table " + lost_table);
        mapmail_frm &screen = site.screen();
        if (logged.endsWith("sformats_c_Click")) {
            QCOMPARE(site.screens.last_logged(), "");
            classic_site::choose(screen, "sformats_c", "clients");
        }
        QCOMPARE(site.screens.last_logged(), logged);
        QCOMPARE(text_of(screen, "field_t"), "");
    }

    void a_summary_that_cannot_be_written_is_logged()
    {
        classic_site site;
        mapmail_frm &screen = site.screen_with_map();
        QVERIFY(QDir().mkpath(site.screens.file("map.txt"))); // a folder cannot be written, not even by root
        press_in(screen, "save_b");
        QCOMPARE(site.screens.last_logged(), "Mapmail_frm.frm|save_b");
        QCOMPARE(site.screens.boxes.shown, QStringList());
    }

    void a_message_that_cannot_be_shown_is_logged_and_moves_no_field()
    {
        classic_site site;
        mapmail_frm &screen = site.screen_with_map();
        control<QLineEdit>(screen, "field_t").setText("First Name");
        {
            const failing_messages no_boxes(site.screens.boxes);
            press_in(screen, "next_b");
        }
        QCOMPARE(site.screens.last_logged(), "Mapmail_frm.frm|next_b");
        QCOMPARE(text_of(screen, "field_t"), "First Name");
    }

    void escape_returns_to_the_page()
    {
        classic_site site;
        QTest::keyClick(&site.screen(), Qt::Key_Escape);
        QVERIFY(!is_loaded<mapmail_frm>());
        QVERIFY(is_visible<Format_mail_frm>());
    }
};

QTEST_MAIN(mapmail_frm_test)
#include "mapmail_frm_test.moc"
