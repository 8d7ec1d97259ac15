// The screen "Autoresponder configuration": its lists, its tests with their words, what is saved, and its doors. The
// replies themselves: tests/intake/auto_responder_test.cpp.
#include "frame/session.h"
#include "intake/map_parser.h"
#include "platform/outbox.h"
#include "screens/frame/menuFrm.h"
#include "screens/maps/MapWizardFinalStep_frm.h"
#include "screens/preferences/Preference.h"
#include "screens/preferences/autoresponder.h"
#include "support/screens_map_wizard.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QTest>

namespace {

const QString lose_question = "What was changed here is not saved. Go on without saving?";

// Two maps; shop has a row, leads has none.
struct responder_site : screens_site {
    responder_site()
    {
        account = store.add_account("orders", "orders@shop.example");
        store.add_map("shop", account, "Order", {{.name = "person", .piece = 1}, {.name = "city", .piece = 2}});
        store.add_map("leads", account, "Lead", {{.name = "company"}});
        store.run("insert into shop (tsl_subject,person,city) values('Order','Ann Moss','Bath')");
    }
    QStringList stored(const QString &map) // all columns but the map's name; none without a row
    {
        ado::Recordset row;
        row.Open("select * from autocontent where mapname='" + map + "'", store.connection());
        QStringList values;
        for (int index = 1; !row.EOF_() && index < row.field_count(); ++index)
            values += row[index].text_or_empty();
        return values;
    }
    qint64 account = 0;
};

template <typename T>
T &part(const char *name)
{
    return control<T>(the<autoresponder>(), name);
}

void choose(const QString &map)
{
    the<autoresponder>().show();
    part<QComboBox>("mapname_c").setCurrentText(map);
}

QStringList entries(const char *list)
{
    QStringList texts;
    for (int index = 0; index < part<QComboBox>(list).count(); ++index)
        texts += part<QComboBox>(list).itemText(index);
    return texts;
}

QString preview()
{
    return part<QLabel>("preview_l").text();
}

QString enable_caption()
{
    return part<QPushButton>("enable_b").text().remove(u'&');
}

void fill_token_reply()
{
    choose("shop");
    part<QRadioButton>("token_o").click();
    type(the<autoresponder>(), "prefix_t", "Ticket");
    type(the<autoresponder>(), "token_t", "007");
    part<QPlainTextEdit>("autocontent_t").setPlainText("Thank you.\nAnn");
}

void update()
{
    press<autoresponder>("autosubmit_s");
}

}

class autoresponder_test : public QObject {
    Q_OBJECT
private slots:
    void without_a_map_it_says_what_to_do()
    {
        screens_site site;
        the<autoresponder>().show();
        QCOMPARE(the<autoresponder>().windowTitle(), "Autoresponder configuration");
        QCOMPARE(entries("mapname_c"), QStringList{"Select Map"});
        QVERIFY(part<QLabel>("empty_l").isVisible());
        QVERIFY(part<QLabel>("empty_l").text().contains("Mail Mapping Wizard"));
        QVERIFY(!part<QWidget>("subject_fr").isEnabled());
        update();
        QCOMPARE(site.boxes.shown, QStringList{"Please select map"});
        QCOMPARE(site.boxes.boxes[0].title, "Tessaly");
    }

    void a_map_made_meanwhile_is_there_when_the_screen_is_shown_again()
    {
        screens_site site;
        menuFrm console;
        console.show();
        the<autoresponder>().show();
        QVERIFY(part<QLabel>("empty_l").isVisible());
        the<Preference>().show();
        const qint64 account = site.store.add_account("orders", "orders@shop.example");
        site.store.add_map("shop", account, "Order", {{.name = "person"}});
        the<autoresponder>().show();
        QCOMPARE(entries("mapname_c"), (QStringList{"Select Map", "shop"}));
        QVERIFY(!part<QLabel>("empty_l").isVisible());
        QCOMPARE(part<QComboBox>("mapname_c").currentIndex(), 0);
        forget_screens();
    }

    void what_is_typed_stays_when_the_maps_are_listed_again()
    {
        responder_site site;
        menuFrm console;
        console.show();
        choose("leads");
        type(the<autoresponder>(), "subject_t", "Thank you");
        the<Preference>().show();
        site.store.add_map("newest", site.account, "New", {{.name = "person"}});
        the<autoresponder>().show();
        QCOMPARE(entries("mapname_c"), (QStringList{"Select Map", "shop", "leads", "newest"}));
        QCOMPARE(part<QComboBox>("mapname_c").currentText(), "leads");
        QCOMPARE(part<QLineEdit>("subject_t").text(), "Thank you");
        QCOMPARE(site.boxes.shown, QStringList());
        forget_screens();
    }

    void a_map_that_is_gone_takes_what_was_typed_for_it_along()
    {
        responder_site site;
        menuFrm console;
        console.show();
        choose("leads");
        type(the<autoresponder>(), "subject_t", "Thank you");
        the<Preference>().show();
        site.store.run("delete * from table_list_tbl where table_name='leads'");
        the<autoresponder>().show();
        QCOMPARE(part<QComboBox>("mapname_c").currentText(), "Select Map");
        QCOMPARE(part<QLineEdit>("subject_t").text(), "");
        QVERIFY(!part<QWidget>("subject_fr").isEnabled());
        forget_screens();
    }

    void the_maps_stand_behind_a_heading()
    {
        responder_site site;
        the<autoresponder>().show();
        QCOMPARE(entries("mapname_c"), (QStringList{"Select Map", "shop", "leads"}));
        QCOMPARE(part<QComboBox>("mapname_c").currentIndex(), 0);
        QVERIFY(!part<QLabel>("empty_l").isVisible());
        QVERIFY(!part<QWidget>("text_fr").isEnabled());
    }

    void a_map_fills_the_field_lists_without_every_map_s_own_columns()
    {
        responder_site site;
        choose("shop");
        QCOMPARE(entries("dynamic_c"), (QStringList{"(no field)", "person", "city"}));
        QCOMPARE(entries("greetfield_c"), (QStringList{"(no field)", "person", "city"}));
        choose("leads");
        QCOMPARE(entries("dynamic_c"), (QStringList{"(no field)", "company"}));
        choose("Select Map");
        QCOMPARE(entries("dynamic_c"), QStringList{"(no field)"});
        QVERIFY(!part<QWidget>("subject_fr").isEnabled());
    }

    void a_map_without_a_reply_is_offered_one()
    {
        responder_site site;
        choose("shop");
        QVERIFY(part<QRadioButton>("standard_o").isChecked());
        QCOMPARE(part<QLineEdit>("greet_t").text(), "Dear");
        QCOMPARE(enable_caption(), "Enable");
        QCOMPARE(part<QLabel>("state_l").text(), "No replies go out.");
    }

    void each_kind_shows_what_it_needs_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QStringList>("shown");
        QTest::newRow("standard") << "standard_o" << QStringList{"subject_t"};
        QTest::newRow("dynamic") << "dynamic_o" << QStringList{"prefix_t", "dynamic_c", "suffix_t"};
        QTest::newRow("token") << "token_o" << QStringList{"prefix_t", "token_t", "suffix_t"};
    }
    void each_kind_shows_what_it_needs()
    {
        QFETCH(QString, kind);
        QFETCH(QStringList, shown);
        responder_site site;
        choose("shop");
        part<QRadioButton>(kind.toLatin1()).click();
        for (const char *name : {"subject_t", "prefix_t", "dynamic_c", "token_t", "suffix_t"})
            QCOMPARE(part<QWidget>(name).isVisible(), shown.contains(name));
    }

    void a_stored_reply_is_shown()
    {
        responder_site site;
        site.store.run("insert into autocontent values('shop',3,'Thanks','No','city','ok','Hello','person','12',"
                       "'Text',yes)");
        choose("shop");
        QVERIFY(part<QRadioButton>("token_o").isChecked());
        QCOMPARE(part<QLineEdit>("subject_t").text(), "Thanks");
        QCOMPARE(part<QLineEdit>("prefix_t").text(), "No");
        QCOMPARE(part<QComboBox>("dynamic_c").currentText(), "city");
        QCOMPARE(part<QLineEdit>("suffix_t").text(), "ok");
        QCOMPARE(part<QLineEdit>("token_t").text(), "12");
        QCOMPARE(part<QLineEdit>("greet_t").text(), "Hello");
        QCOMPARE(part<QComboBox>("greetfield_c").currentText(), "person");
        QCOMPARE(part<QPlainTextEdit>("autocontent_t").toPlainText(), "Text");
        QCOMPARE(enable_caption(), "Disable");
        choose("leads"); // nothing was typed: nothing is asked
        QCOMPARE(part<QLineEdit>("prefix_t").text(), "");
        QCOMPARE(enable_caption(), "Enable");
    }

    void a_click_flips_the_button_and_only_update_stores_it()
    {
        responder_site site;
        fill_token_reply();
        press<autoresponder>("enable_b");
        QCOMPARE(enable_caption(), "Disable");
        QCOMPARE(part<QLabel>("state_l").text(), "Replies go out after Update.");
        QCOMPARE(site.stored("shop"), QStringList());
        press<autoresponder>("enable_b");
        QCOMPARE(enable_caption(), "Enable");
        press<autoresponder>("enable_b");
        update();
        QCOMPARE(site.stored("shop").last(), "True");
        QCOMPARE(part<QLabel>("state_l").text(), "Replies go out.");
        press<autoresponder>("enable_b");
        QCOMPARE(part<QLabel>("state_l").text(), "No replies go out after Update.");
    }

    void the_tests_speak_one_at_a_time()
    {
        responder_site site;
        choose("shop");
        update();
        QVERIFY(part<QPlainTextEdit>("autocontent_t").hasFocus() ||
                the<autoresponder>().focusWidget() == &part<QWidget>("autocontent_t"));
        part<QPlainTextEdit>("autocontent_t").setPlainText("Hello");
        update();
        part<QRadioButton>("dynamic_o").click();
        update();
        part<QRadioButton>("token_o").click();
        update();
        type(the<autoresponder>(), "prefix_t", "No");
        type(the<autoresponder>(), "token_t", "5x");
        update();
        type(the<autoresponder>(), "token_t", "1e999"); // more than the store holds
        update();
        QCOMPARE(site.boxes.shown, (QStringList{"Please enter mail text", "Please enter subject text.",
                                                "Please enter subject prefix.", "Please enter subject prefix.",
                                                "Please enter numeric value.", "Please enter numeric value."}));
        QCOMPARE(site.stored("shop"), QStringList());
    }

    void each_test_leads_to_the_box_to_mend()
    {
        responder_site site;
        the<autoresponder>().show();
        const auto box_of_update = [] {
            part<QPushButton>("autosubmit_s").setFocus();
            update();
            return the<autoresponder>().focusWidget()->objectName();
        };
        QCOMPARE(box_of_update(), "mapname_c");
        choose("shop");
        QCOMPARE(box_of_update(), "autocontent_t");
        part<QPlainTextEdit>("autocontent_t").setPlainText("Hello");
        QCOMPARE(box_of_update(), "subject_t");
        part<QRadioButton>("dynamic_o").click();
        QCOMPARE(box_of_update(), "prefix_t");
        part<QRadioButton>("token_o").click();
        QCOMPARE(box_of_update(), "prefix_t");
        type(the<autoresponder>(), "prefix_t", "No");
        QCOMPARE(box_of_update(), "token_t");
        QCOMPARE(site.boxes.shown.size(), 6);
    }

    void update_stores_what_is_seen()
    {
        responder_site site;
        fill_token_reply();
        type(the<autoresponder>(), "suffix_t", "it's");
        part<QComboBox>("greetfield_c").setCurrentText("person");
        update();
        QCOMPARE(site.boxes.shown, QStringList());
        QCOMPARE(site.stored("shop"),
                 (QStringList{"3", "", "Ticket", "", "it's", "Dear", "person", "007", "Thank you.\r\nAnn", "False"}));
        QVERIFY(site.status_lines.last().startsWith("The autoresponder of shop is saved, but not enabled"));
        QVERIFY(is_visible<autoresponder>());
    }

    void saving_again_replaces_the_row_and_puts_the_token_back()
    {
        responder_site site;
        site.store.run("insert into autocontent values('SHOP',1,'old','','','','','','','old',yes)"); // by another hand
        site.store.run("insert into autocontent values('leads',1,'other','','','','','','','other',yes)");
        fill_token_reply();
        update();
        QCOMPARE(site.stored("shop")[7], "007");
        site.store.run("update autocontent set LastToken='20' where mapname='shop'"); // replies went out meanwhile
        update();
        QCOMPARE(site.stored("shop")[7], "007");
        QCOMPARE(site.rows_of("autocontent"), 2);
        QCOMPARE(site.stored("leads")[1], "other");
    }

    void the_preview_shows_the_subject_as_it_will_go_out()
    {
        responder_site site;
        choose("shop");
        type(the<autoresponder>(), "subject_t", "Thank you");
        QCOMPARE(preview(), "It will go out as: \u201cThank you\u201d");
        part<QRadioButton>("dynamic_o").click();
        type(the<autoresponder>(), "prefix_t", "Order from");
        QCOMPARE(preview(), "It will go out as: \u201cOrder from  \u201d");
        part<QComboBox>("dynamic_c").setCurrentText("city");
        QCOMPARE(preview(), "It will go out as: \u201cOrder from Bath \u201d"); // of the newest mail
        part<QRadioButton>("token_o").click();
        type(the<autoresponder>(), "token_t", "007");
        type(the<autoresponder>(), "suffix_t", "ok");
        QCOMPARE(preview(), "It will go out as: \u201cOrder from 007 ok\u201d");
        part<QPlainTextEdit>("autocontent_t").clear();
        site.boxes.will_say_yes();
        choose("leads");
        part<QRadioButton>("dynamic_o").click();
        part<QComboBox>("dynamic_c").setCurrentText("company");
        QCOMPARE(preview(), "It will go out as: \u201c <company> \u201d"); // no mail yet
        QCOMPARE(session.err_number, 0u);
    }

    void the_preview_shows_how_the_text_will_begin()
    {
        responder_site site;
        choose("shop");
        const auto begins = [] { return part<QLabel>("greeting_l").text(); };
        QCOMPARE(begins(), "Without a field every reply begins with: \u201cDear \u201d");
        part<QComboBox>("greetfield_c").setCurrentText("person");
        QCOMPARE(begins(), "It will begin with: \u201cDear Ann Moss\u201d");
        type(the<autoresponder>(), "greet_t", "Hello");
        QCOMPARE(begins(), "It will begin with: \u201cHello Ann Moss\u201d");
        QVERIFY(part<QLabel>("greeting_l").isVisible());
        part<QLineEdit>("greet_t").clear();
        QVERIFY(!part<QLabel>("greeting_l").isVisible());
    }

    void the_previews_show_the_parts_as_they_are_stored()
    {
        responder_site site;
        choose("shop");
        type(the<autoresponder>(), "subject_t", "Thank you ");
        QCOMPARE(preview(), "It will go out as: \u201cThank you\u201d");
        part<QRadioButton>("token_o").click();
        type(the<autoresponder>(), "prefix_t", "Ticket: ");
        type(the<autoresponder>(), "token_t", " 7 ");
        type(the<autoresponder>(), "suffix_t", " ok ");
        QCOMPARE(preview(), "It will go out as: \u201cTicket: 7 ok\u201d");
        type(the<autoresponder>(), "suffix_t", " ");
        QCOMPARE(preview(), "It will go out as: \u201cTicket: 7 \u201d"); // the blank of an empty part stays
        part<QComboBox>("greetfield_c").setCurrentText("person");
        type(the<autoresponder>(), "greet_t", "Dear ");
        QCOMPARE(part<QLabel>("greeting_l").text(), "It will begin with: \u201cDear Ann Moss\u201d");
        type(the<autoresponder>(), "greet_t", " ");
        QVERIFY(!part<QLabel>("greeting_l").isVisible()); // it is stored as none
    }

    void an_empty_value_of_the_newest_mail_is_shown_as_one()
    {
        responder_site site;
        site.store.run("insert into shop (tsl_subject,person,city) values('Order','','')");
        choose("shop");
        part<QRadioButton>("dynamic_o").click();
        type(the<autoresponder>(), "prefix_t", "Order");
        part<QComboBox>("dynamic_c").setCurrentText("city");
        QCOMPARE(preview(), "It will go out as: \u201cOrder  \u201d");
        part<QComboBox>("greetfield_c").setCurrentText("person");
        QCOMPARE(part<QLabel>("greeting_l").text(), "It will begin with: \u201cDear \u201d");
    }

    void a_field_s_value_is_read_once_and_not_at_each_key()
    {
        responder_site site;
        choose("shop");
        part<QRadioButton>("dynamic_o").click();
        part<QComboBox>("dynamic_c").setCurrentText("city");
        site.store.run("drop table shop");
        type(the<autoresponder>(), "prefix_t", "Order from");
        QCOMPARE(preview(), "It will go out as: \u201cOrder from Bath \u201d");
        QCOMPARE(session.err_number, 0u);
    }

    void a_no_break_blank_is_stored_as_one()
    {
        responder_site site;
        choose("shop");
        type(the<autoresponder>(), "subject_t", "Thank you");
        part<QPlainTextEdit>("autocontent_t").setPlainText("10\u00a0000 thanks\nAnn");
        update();
        QCOMPARE(site.stored("shop")[8], "10\u00a0000 thanks\r\nAnn");
        choose("leads"); // nothing is left to be saved
        QCOMPARE(site.boxes.shown, QStringList());
    }

    void escape_loses_nothing_that_was_typed()
    {
        responder_site site;
        fill_token_reply();
        site.boxes.will_say_no();
        QTest::keyClick(&part<QWidget>("autocontent_t"), Qt::Key_Escape);
        QCOMPARE(site.boxes.shown, QStringList{lose_question});
        QVERIFY(is_visible<autoresponder>());
        QCOMPARE(part<QLineEdit>("token_t").text(), "007");
        site.boxes.will_say_yes();
        press<autoresponder>("cancel_b");
        QVERIFY(!is_loaded<autoresponder>());
        QCOMPARE(site.stored("shop"), QStringList());
    }

    void escape_closes_at_once_where_nothing_was_typed_or_all_is_saved()
    {
        responder_site site;
        choose("shop");
        QTest::keyClick(&the<autoresponder>(), Qt::Key_Escape);
        QVERIFY(!is_loaded<autoresponder>());
        fill_token_reply();
        update();
        QTest::keyClick(&the<autoresponder>(), Qt::Key_Escape);
        QVERIFY(!is_loaded<autoresponder>());
        QCOMPARE(site.boxes.shown, QStringList());
    }

    void another_map_asks_before_it_takes_the_place_of_what_was_typed()
    {
        responder_site site;
        fill_token_reply();
        site.boxes.will_say_no();
        choose("leads");
        QCOMPARE(part<QComboBox>("mapname_c").currentText(), "shop");
        QCOMPARE(part<QLineEdit>("token_t").text(), "007");
        site.boxes.will_say_yes();
        choose("leads");
        QCOMPARE(part<QComboBox>("mapname_c").currentText(), "leads");
        QCOMPARE(part<QLineEdit>("token_t").text(), "");
    }

    void a_failing_update_is_logged_and_told()
    {
        responder_site site;
        fill_token_reply();
        site.store.run("drop table autocontent");
        update();
        QCOMPARE(session.err_form, "autoresponder_frm.frm");
        QCOMPARE(session.err_routine, "autosubmit_s");
        QVERIFY(site.status_lines.last().startsWith("The autoresponder was not saved: "));
    }

    void a_map_whose_table_is_gone_is_told()
    {
        responder_site site;
        site.store.run("drop table leads");
        choose("leads");
        QCOMPARE(session.err_form, "autoresponder_frm.frm");
        QVERIFY(site.status_lines.last().startsWith("The autoresponder of this map cannot be shown: "));
        QCOMPARE(site.last_logged(), "autoresponder_frm.frm|loadmap");
    }

    void a_map_that_could_not_be_read_does_not_look_like_one_without_a_reply()
    {
        responder_site site;
        site.store.run("insert into autocontent values('leads',3,'','No','','','','','12','Text',yes)");
        site.store.run("drop table leads");
        choose("leads");
        for (const char *name : {"subject_fr", "text_fr", "enable_b", "autosubmit_s"})
            QVERIFY2(!part<QWidget>(name).isEnabled(), name);
        QCOMPARE(part<QLabel>("state_l").text(), "");
        QCOMPARE(preview(), "");
        update();
        QTest::keyClick(&part<QWidget>("mapname_c"), Qt::Key_Return);
        QCOMPARE(site.stored("leads").mid(6), (QStringList{"", "12", "Text", "True"}));
        choose("shop"); // the next one is as usual
        QVERIFY(part<QWidget>("autosubmit_s").isEnabled());
        QVERIFY(part<QWidget>("subject_fr").isEnabled());
        QCOMPARE(part<QLabel>("state_l").text(), "No replies go out.");
        QCOMPARE(site.boxes.shown, QStringList());
    }

    void without_a_choice_it_asks_for_one()
    {
        responder_site site;
        the<autoresponder>().show();
        QCOMPARE(part<QLabel>("state_l").text(), "Choose a map first.");
        choose("shop");
        choose("Select Map");
        QCOMPARE(part<QLabel>("state_l").text(), "Choose a map first.");
        QVERIFY(part<QWidget>("autosubmit_s").isEnabled()); // it says so, too
    }

    void the_boxes_keep_their_height_where_there_is_little_room()
    {
        responder_site site;
        fill_token_reply();
        the<autoresponder>().resize(the<autoresponder>().minimumSize());
        for (const char *name : {"prefix_t", "token_t", "suffix_t", "greet_t"})
            QVERIFY2(part<QWidget>(name).height() >= part<QWidget>(name).sizeHint().height(), name);
        QVERIFY(part<QWidget>("autocontent_t").height() >= part<QWidget>("autocontent_t").fontMetrics().lineSpacing());
    }

    void long_names_of_columns_do_not_widen_the_screen()
    {
        responder_site site;
        site.store.run("alter table leads add column " + QString(60, 'w') + " text(255)");
        choose("shop");
        part<QRadioButton>("dynamic_o").click();
        const int before = part<QWidget>("qt_page").minimumSizeHint().width();
        site.boxes.will_say_yes();
        choose("leads");
        part<QRadioButton>("dynamic_o").click();
        QCOMPARE(part<QWidget>("qt_page").minimumSizeHint().width(), before);
    }

    void the_keyboard_reaches_everything()
    {
        responder_site site;
        choose("shop");
        QCOMPARE(part<QPushButton>("autosubmit_s").isDefault(), true);
        QCOMPARE(key_clash(the<autoresponder>()), "");
        QCOMPARE(part<QLineEdit>("token_t").accessibleName(), "Dynamic number:");
        QCOMPARE(part<QPlainTextEdit>("autocontent_t").accessibleName(), "Mail text");
    }

    void the_wizard_s_final_step_opens_it_for_the_new_map()
    {
        responder_site site;
        the<autoresponder>().load(); // one that was loaded before the map was made
        maps::map_wizard.map_name = "newest";
        site.store.add_map("newest", site.account, "New", {{.name = "person"}});
        the<MapWizardFinalStep_frm>().show();
        auto &wanted = control<QCheckBox>(the<MapWizardFinalStep_frm>(), "autoresp_chk");
        QCOMPARE(wanted.text(), "&Select to configure autoresponder for the map »NEWEST");
        QVERIFY(wanted.isEnabled());
        in_modal<autoresponder>([](autoresponder &screen) {
            QCOMPARE(control<QComboBox>(screen, "mapname_c").currentText(), "newest");
            control<QPushButton>(screen, "cancel_b").click();
        });
        wanted.click();
        QVERIFY(!wanted.isChecked()); // no autoresponder was made
        in_modal<autoresponder>([](autoresponder &screen) {
            type(screen, "subject_t", "Thank you");
            control<QPlainTextEdit>(screen, "autocontent_t").setPlainText("We have it.");
            control<QPushButton>(screen, "enable_b").click();
            control<QPushButton>(screen, "autosubmit_s").click();
            control<QPushButton>(screen, "cancel_b").click();
        });
        wanted.click();
        QVERIFY(wanted.isChecked());
        QCOMPARE(site.stored("newest").mid(0, 2), (QStringList{"1", "Thank you"}));
        QCOMPARE(site.boxes.shown, QStringList());
        maps::map_wizard = {};
    }

    void the_next_mail_of_the_map_is_answered()
    {
        responder_site site;
        fill_token_reply();
        press<autoresponder>("enable_b");
        update();
        site.store.run("insert into orders (tsl_subject,tsl_recdate,tsl_Email,tsl_status,tsl_body) values('Order',now,"
                       "'zoe@home.example','new','Zoe\r\nUlm')");
        QVERIFY(intake::parse_unprocessed_mails());
        QCOMPARE(outbox::contents().size(), size_t(1));
        QCOMPARE(outbox::contents()[0].Subject, "Ticket 007 ");
        QCOMPARE(site.stored("shop")[7], "8");
    }
};

QTEST_MAIN(autoresponder_test)
#include "autoresponder_test.moc"
