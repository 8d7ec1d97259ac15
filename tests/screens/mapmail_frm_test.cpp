// "MapMail" and its companions: the fields of a saved map one at a time, their tests, and the summary map.txt.
#include "frame/session.h"
#include "maps/map_wizard.h"
#include "platform/text_file.h"
#include "platform/winopen.h"
#include "screens/exact_text.h"
#include "screens/maps/Ignore.h"
#include "screens/maps/fcodes_frm.h"
#include "screens/maps/mapmail_frm.h"
#include "screens/preferences/Accounts.h"
#include "screens/preferences/Format_mail_frm.h"
#include "screens/screen.h"
#include "support/failing_messages.h"
#include "support/screens_driver.h"
#include "support/screens_site.h"

#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDir>
#include <QGuiApplication>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QTimer>

namespace {

// An account "orders" with the map "clients" of three fields, the second with fixed codes, the third a dynamic one.
struct classic_site {
    screens_site screens;

    classic_site()
    {
        test_store &store = screens.store;
        const qint64 account = store.add_account("orders", "orders@shop.example");
        store.run("insert into orders (tsl_subject,tsl_recdate,tsl_Email,tsl_status,tsl_body) "
                  "values('Order','1/2/2026','zoe@home.example','new','Name: Zoe\r\nCity: Bonn\r\nNo: 17')");
        store.add_map("clients", account, "Order",
                      {{"first_name", 1, true, "Name:@@@!"}, {"city", 2, false, {}}, {"ticket", 3, true, "No:"}});
        store.run("update format_tbl set fcodegen=1 where fname='city'");
        store.run("update format_tbl set fcodegen=2 where fname='ticket'");
        const QString city = store.cell("select id from format_tbl where fname='city'");
        store.run("insert into fcodes_tbl (fieldID,fielddesc,fieldCODE) values(" + city + ",'Bonn','B')");
        store.run("insert into fcodes_tbl (fieldID,fielddesc,fieldCODE) values(" + city + ",'Paris','P')");
        maps::map_wizard = {};
        maps::map_wizard.mail_table = "orders";
        maps::map_wizard.mail_id = "1";
    }

    mapmail_frm &screen()
    {
        the<mapmail_frm>().show();
        return the<mapmail_frm>();
    }
    mapmail_frm &screen_with_map()
    {
        choose(screen(), "sformats_c", "clients");
        return the<mapmail_frm>();
    }
    static void choose(mapmail_frm &screen, const char *name, const QString &entry)
    {
        auto &list = control<QComboBox>(screen, name);
        list.setCurrentText(entry);
        emit list.activated(list.currentIndex());
    }
};

QString text_of(const mapmail_frm &screen, const char *name)
{
    return control<QLineEdit>(screen, name).text();
}

QString entry_of(const mapmail_frm &screen, const char *name)
{
    return control<QComboBox>(screen, name).currentText();
}

void press(const QWidget &screen, const char *name)
{
    control<QPushButton>(screen, name).click();
}

// Works in the modal companion that the press opens.
template <typename companion>
void press_and_in(const mapmail_frm &screen, const char *button, const std::function<void(companion &)> &work)
{
    Responder expected({"Ignore characters", "Code Generation"});
    QTimer::singleShot(0, &the<mapmail_frm>(), [&] {
        work(the<companion>());
        if (is_loaded<companion>())
            the<companion>().unload();
    });
    press(screen, button);
    QCOMPARE(expected.refused, QStringList());
}

QStringList entries(const QListWidget &list)
{
    QStringList texts;
    for (int row = 0; row < list.count(); ++row)
        texts += list.item(row)->text();
    return texts;
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
        press(screen, "next_b");
        QCOMPARE(text_of(screen, "field_t"), "city");
        QVERIFY(!control<QCheckBox>(screen, "dont_ch").isChecked());
        QCOMPARE(screen.code().type, "fixed");
        QCOMPARE(screen.code().descriptions, (QStringList{"Bonn", "Paris"}));
        QCOMPARE(screen.code().codes, (QStringList{"B", "P"}));
        press(screen, "next_b");
        QCOMPARE(text_of(screen, "field_t"), "ticket");
        QCOMPARE(screen.code().type, "dynamic");
        press(screen, "next_b");
        QCOMPARE(text_of(screen, "field_t"), QString()); // a new one
        press(screen, "Prev_b");
        QCOMPARE(text_of(screen, "field_t"), "ticket");
        QCOMPARE(site.screens.boxes.shown, QStringList());
    }

    void next_tests_name_code_name_again_position_in_this_order()
    {
        classic_site site;
        mapmail_frm &screen = site.screen_with_map();
        for (int field = 0; field < 3; ++field)
            press(screen, "next_b");
        auto &name = control<QLineEdit>(screen, "field_t");
        name.setText("First Name");
        control<QCheckBox>(screen, "code_ch").setChecked(true);
        press(screen, "next_b");
        name.setText("CITY");
        press(screen, "next_b");
        control<QCheckBox>(screen, "code_ch").setChecked(false);
        press(screen, "next_b");
        name.setText("town");
        control<QComboBox>(screen, "Line_c").setCurrentText("Line2");
        press(screen, "next_b");
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
        press(screen, "next_b");
        QCOMPARE(site.screens.boxes.shown, QStringList());
        press(screen, "Prev_b");
        QCOMPARE(text_of(screen, "field_t"), "Name");
    }

    void selected_text_is_copied_and_pasted_into_the_name()
    {
        classic_site site;
        mapmail_frm &screen = site.screen();
        QVERIFY(!control<QPushButton>(screen, "Command5").isEnabled());
        control<exact_text>(screen, "Text1").select({0, 4});
        QVERIFY(control<QPushButton>(screen, "Command5").isEnabled());
        press(screen, "Command5");
        QVERIFY(!control<QPushButton>(screen, "Command5").isEnabled());
        press(screen, "Command7");
        QCOMPARE(text_of(screen, "field_t"), "Name");
        QVERIFY(!control<QPushButton>(screen, "Command7").isEnabled());
    }

    void ignored_texts_are_typed_and_kept_in_their_order()
    {
        classic_site site;
        mapmail_frm &screen = site.screen_with_map();
        press_and_in<Ignore>(screen, "Command6", [](Ignore &list) {
            QCOMPARE(entries(control<QListWidget>(list, "ignore_l")), (QStringList{"Name:", "!"}));
            press(list, "Add_b");
            control<QLineEdit>(list, "ignore_T").setText("?");
            press(list, "Add_b");
            QCOMPARE(control<QLineEdit>(list, "ignore_T").text(), QString());
            press(list, "Submit_b");
        });
        QCOMPARE(site.screens.boxes.shown, QStringList{"Please enter character"});
        QCOMPARE(screen.ignored_texts(), (QStringList{"Name:", "!", "?"}));
    }

    void cancel_keeps_the_ignored_texts_as_they_were()
    {
        classic_site site;
        mapmail_frm &screen = site.screen_with_map();
        press_and_in<Ignore>(screen, "Command6", [](Ignore &list) {
            control<QLineEdit>(list, "ignore_T").setText("?");
            press(list, "Add_b");
            press(list, "cancel_b");
        });
        QCOMPARE(screen.ignored_texts(), (QStringList{"Name:", "!"}));
    }

    void codes_want_a_kind_and_then_values()
    {
        classic_site site;
        mapmail_frm &screen = site.screen_with_map();
        control<QCheckBox>(screen, "code_ch").setChecked(true);
        press_and_in<fcodes_frm>(screen, "values_b", [](fcodes_frm &codes) {
            QVERIFY(!control<QRadioButton>(codes, "fixed_op").isChecked());
            QVERIFY(!control<QRadioButton>(codes, "dynamic_op").isChecked());
            press(codes, "submit_b");
            control<QRadioButton>(codes, "fixed_op").click();
            press(codes, "submit_b");
            press(codes, "add_b");
            control<QLineEdit>(codes, "desc_t").setText("Red");
            control<QLineEdit>(codes, "code_t").setText(" ");
            press(codes, "add_b");
            control<QLineEdit>(codes, "code_t").setText("R");
            press(codes, "add_b");
            press(codes, "submit_b");
        });
        QCOMPARE(site.screens.boxes.shown, (QStringList{"Please select any one of the type", "Please enter values",
                                                        "Please enter description", "Please enter code"}));
        QCOMPARE(screen.code().type, "fixed");
        QCOMPARE(screen.code().descriptions, QStringList{"Red"});
        QCOMPARE(screen.code().codes, QStringList{"R"});
    }

    void codes_open_with_what_the_field_has()
    {
        classic_site site;
        mapmail_frm &screen = site.screen_with_map();
        press(screen, "next_b");
        press_and_in<fcodes_frm>(screen, "values_b", [](fcodes_frm &codes) {
            QVERIFY(control<QRadioButton>(codes, "fixed_op").isChecked());
            QCOMPARE(entries(control<QListWidget>(codes, "desc_l")), (QStringList{"Bonn", "Paris"}));
            QCOMPARE(entries(control<QListWidget>(codes, "code_l")), (QStringList{"B", "P"}));
            control<QRadioButton>(codes, "dynamic_op").click();
            press(codes, "submit_b");
        });
        QCOMPARE(screen.code().type, "dynamic");
    }

    void cancel_on_the_codes_also_unsets_the_box_data()
    {
        QTest::addColumn<QString>("way");
        for (const char *way : {"the button", "Escape", "the cross"})
            QTest::newRow(way) << way;
    }

    void cancel_on_the_codes_also_unsets_the_box()
    {
        QFETCH(QString, way);
        classic_site site;
        mapmail_frm &screen = site.screen_with_map();
        control<QCheckBox>(screen, "code_ch").setChecked(true);
        press_and_in<fcodes_frm>(screen, "values_b", [way](fcodes_frm &codes) {
            if (way == "the cross")
                codes.window()->close();
            else if (way == "Escape")
                QTest::keyClick(&codes, Qt::Key_Escape);
            else
                press(codes, "cancel_b");
        });
        QVERIFY(!control<QCheckBox>(screen, "code_ch").isChecked());
        QVERIFY(!control<QPushButton>(screen, "values_b").isEnabled());
    }

    void a_fixed_code_without_values_stops_the_walk()
    {
        classic_site site;
        site.screens.store.run("delete from fcodes_tbl");
        mapmail_frm &screen = site.screen_with_map();
        press(screen, "next_b");
        press(screen, "next_b");
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
        press(screen, "open_b");
        QCOMPARE(control<QComboBox>(screen, "sformats_c").count(), 3);
        QCOMPARE(control<QComboBox>(screen, "sformats_c").itemText(2), "buyers");
    }

    void another_separator_leaves_the_field_its_position()
    {
        classic_site site;
        mapmail_frm &screen = site.screen_with_map();
        press(screen, "next_b");
        classic_site::choose(screen, "separator_c", "Comma(,)");
        QCOMPARE(entry_of(screen, "Line_c"), "Line2");
        press(screen, "Prev_b");
        QCOMPARE(entry_of(screen, "Line_c"), "Line1");
        QCOMPARE(control<QComboBox>(screen, "Line_c").count(), 1);
    }

    void a_summary_that_nothing_shows_is_told_of()
    {
        classic_site site;
        mapmail_frm &screen = site.screen_with_map();
        site.screens.boxes.will_say_no();
        press(screen, "save_b");
        QCOMPARE(site.screens.status_lines.last(), "The summary is in " + site.screens.file("map.txt") + ".");
    }

    void closing_leaves_one_page_open_and_on_the_same_account()
    {
        classic_site site;
        mapmail_frm &screen = site.screen();
        the<Accounts>().show();
        press(screen, "Command2");
        QVERIFY(!is_loaded<Accounts>());
        QVERIFY(is_visible<Format_mail_frm>());
        QCOMPARE(control<QComboBox>(the<Format_mail_frm>(), "query_c").currentText(), "orders");
    }

    void the_summary_wants_a_field()
    {
        classic_site site;
        press(site.screen(), "save_b");
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
        press(screen, "save_b");
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

    void a_map_of_another_separator_is_shown_though_the_list_lacks_it()
    {
        classic_site site;
        site.screens.store.run("update table_list_tbl set seperator='.' where table_name='clients'");
        mapmail_frm &screen = site.screen_with_map();
        QCOMPARE(entry_of(screen, "separator_c"), "Separator");
        QCOMPARE(text_of(screen, "field_t"), "first_name");
        press(screen, "next_b");
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
        press(screen, "save_b");
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
            press(screen, "next_b");
        }
        QCOMPARE(site.screens.last_logged(), "Mapmail_frm.frm|next_b");
        QCOMPARE(text_of(screen, "field_t"), "First Name");
    }

    void the_codes_log_under_their_own_words()
    {
        classic_site site;
        mapmail_frm &screen = site.screen_with_map();
        press(screen, "next_b"); // to the field with fixed codes
        site.screens.spoil_store();
        press_and_in<fcodes_frm>(screen, "values_b", [&site](fcodes_frm &codes) {
            QCOMPARE(site.screens.last_logged(), "Fcodes_frm.frm|Form_load");
            QCOMPARE(entries(control<QListWidget>(codes, "desc_l")), (QStringList{"Bonn", "Paris"}));
        });
        screen.set_code({}); // neither kind: a submit has something to say
        press_and_in<fcodes_frm>(screen, "values_b", [&site](fcodes_frm &codes) {
            const failing_messages no_boxes(site.screens.boxes);
            press(codes, "submit_b");
            QCOMPARE(site.screens.last_logged(), "Fcodes_frm.frm|Submit_b");
            QVERIFY(codes.shown());
        });
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
