// The end of the Mail Mapping Wizard: the map's name, what is in the store after the save, failures, Congratulations.
#include "frame/status.h"
#include "screens/frame/menuFrm.h"
#include "screens/intake/mapinprogress_frm.h"
#include "screens/maps/MapWizardFinalStep_frm.h"
#include "screens/maps/MapWizardPView_frm.h"
#include "screens/maps/MapWizardStep1_frm.h"
#include "screens/maps/MapWizardStep4_frm.h"
#include "screens/maps/mapwizardsave_frm.h"
#include "support/screens_map_wizard.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QTest>

namespace {

using save = mapwizardsave_frm;

const QString wrong_name = "Invalid query name. Special characters, keywords not allowed";
const QString known_name =
    "This map already exists. Please provide another name. If you want to use the new map for this format of \r\nmail "
    "in the future, you need to delete the old map first from the database Manager. To do this, import\r\n the "
    "existing map's data into the new map before deleting, or you will loose all data stored in that map. ";

// Three fields marked in the first order, ready for Finish.
struct finished_site : map_wizard_site {
    finished_site()
    {
        open_cutting(*this, "orders", 1);
        cut_by_lines();
        add_field("person", 1, {"Name: "});
        add_field("city", 2, {"City: "});
        add_field("amount", 4, {"Quantity: "});
    }
};

QString label(const char *name)
{
    return control<QLabel>(the<MapWizardFinalStep_frm>(), name).text();
}

}

class map_wizard_save_test : public QObject {
    Q_OBJECT
private slots:
    void a_bad_name_is_refused_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("message");
        QTest::addColumn<message_icon>("icon");
        QTest::newRow("empty") << "" << wrong_name << message_icon::critical;
        QTest::newRow("a hyphen") << "my-map" << wrong_name << message_icon::critical;
        QTest::newRow("a blank") << "my map" << wrong_name << message_icon::critical;
        QTest::newRow("a digit first") << "1map" << wrong_name << message_icon::critical;
        QTest::newRow("there is one") << "shop" << known_name << message_icon::exclamation;
        QTest::newRow("in other capitals and with blanks") << " SHOP " << known_name << message_icon::exclamation;
    }

    void a_bad_name_is_refused()
    {
        QFETCH(QString, name);
        QFETCH(QString, message);
        QFETCH(message_icon, icon);
        map_wizard_site site;
        site.store.add_map("shop", site.account, "Sale", {{.name = "city"}});
        the<save>().show();
        type(the<save>(), "mapname_t", name);
        press<save>("save_b");
        QCOMPARE(site.boxes.shown, QStringList{message});
        QCOMPARE(site.boxes.boxes[0].icon, icon);
        QVERIFY(is_visible<save>());
        QVERIFY(the<save>().cursor().shape() != Qt::WaitCursor);
        QCOMPARE(site.rows_of("table_list_tbl"), 1);
    }

    void the_existing_maps_are_listed()
    {
        map_wizard_site site;
        site.store.add_map("shop", site.account, "Sale", {{.name = "city"}});
        site.store.add_map("leads", site.account, "Lead", {{.name = "city"}});
        the<save>().show();
        QCOMPARE(the<save>().windowTitle(), "Save");
        auto &names = control<QComboBox>(the<save>(), "mapnames_c");
        QCOMPARE(names.count(), 2);
        QCOMPARE(names.itemText(0), "shop");
        QCOMPARE(names.itemText(1), "leads");
        QVERIFY(!control<QLabel>(the<save>(), "warning_l").isVisible());
        QCOMPARE(the<save>().focusWidget(), &control<QLineEdit>(the<save>(), "mapname_t"));
    }

    void cancel_leads_back_to_the_fields()
    {
        finished_site site;
        in_modal<MapWizardPView_frm>([](MapWizardPView_frm &preview) {
            in_modal<save>([](save &screen) {
                type(screen, "mapname_t", "shop");
                control<QPushButton>(screen, "cancel_b").click();
            });
            control<QPushButton>(preview, "save_b").click();
        });
        press<MapWizardStep4_frm>("finish_b");
        QVERIFY(is_visible<MapWizardStep4_frm>());
        QCOMPARE(added_fields().size(), 3);
        QCOMPARE(site.rows_of("table_list_tbl"), 0);
    }

    void a_save_writes_the_map_and_brings_the_mails_over()
    {
        finished_site site;
        menuFrm console;
        console.show();
        finish_as(" shop ");
        QCOMPARE(site.boxes.shown, QStringList());
        QCOMPARE(site.store.cell("select table_name from table_list_tbl"), "shop");
        QCOMPARE(site.store.cell("select query_id from table_list_tbl"), QString::number(site.account));
        QCOMPARE(site.store.cell("select lastformat from table_list_tbl"), "True");
        QCOMPARE(site.store.cell("select seperator from table_list_tbl"), "Line");
        QCOMPARE(site.store.cell("select subject from table_list_tbl"), "Order");
        QCOMPARE(site.store.column("select fname from format_tbl order by id"),
                 (QVariantList{"amount", "city", "person"})); // the last added has the lowest id
        QCOMPARE(site.store.column("select fposition from format_tbl order by id"),
                 (QVariantList{"Line4", "Line2", "Line1"}));
        QCOMPARE(site.store.column("select fignore from format_tbl order by id"),
                 (QVariantList{"Quantity:", "City:", "Name:"}));
        QCOMPARE(site.store.column("select person from shop"), (QVariantList{"Ann Moss", "Bob Reed", "Kim"}));
        QCOMPARE(site.store.column("select city from shop"), (QVariantList{"Bath", "Cork", "Ulm"}));
        QCOMPARE(site.store.column("select amount from shop"), (QVariantList{"12", "3", "1"}));
        QCOMPARE(site.store.column("select tsl_processed from orders"),
                 (QVariantList{"True", "True", "False", "True"}));
    }

    void after_the_save_only_congratulations_are_open()
    {
        finished_site site;
        menuFrm console;
        console.show();
        finish_as("shop");
        QVERIFY(is_visible<MapWizardFinalStep_frm>());
        for (const bool open : {is_loaded<MapWizardStep4_frm>(), is_loaded<save>(), is_loaded<MapWizardPView_frm>(),
                                is_loaded<mapinprogress_frm>()})
            QVERIFY(!open);
        QVERIFY(console.cursor().shape() != Qt::WaitCursor);
        QVERIFY(QFile::exists(site.file("mappinganimation.html")));
    }

    void the_final_step_names_the_map()
    {
        finished_site site;
        finish_as("shop");
        QCOMPARE(the<MapWizardFinalStep_frm>().windowTitle(), "Congratulations!");
        auto &responder = control<QCheckBox>(the<MapWizardFinalStep_frm>(), "autoresp_chk");
        QCOMPARE(responder.text(), "&Select to configure autoresponder for the map »SHOP");
        QVERIFY(responder.isEnabled()); // what it opens: autoresponder_test.cpp
        QVERIFY(!responder.isChecked());
        QVERIFY(label("done_l").contains("3 mails are in its table."));
    }

    void another_map_begins_at_the_welcome()
    {
        finished_site site;
        finish_as("shop");
        press<MapWizardFinalStep_frm>("map_b");
        QVERIFY(!is_loaded<MapWizardFinalStep_frm>());
        QVERIFY(is_visible<MapWizardStep1_frm>());
        QCOMPARE(added_fields(), QStringList());
    }

    void quit_wizard_closes_the_final_step()
    {
        finished_site site;
        finish_as("shop");
        press<MapWizardFinalStep_frm>("Command1");
        QVERIFY(!is_loaded<MapWizardFinalStep_frm>());
        QVERIFY(!is_loaded<MapWizardStep1_frm>());
        QCOMPARE(site.boxes.shown, QStringList());
    }

    void two_maps_in_a_row_share_nothing()
    {
        finished_site site;
        finish_as("shop");
        press<MapWizardFinalStep_frm>("map_b");
        open_cutting(site, "orders", 1);
        cut_by_lines();
        QCOMPARE(added_fields(), QStringList());
        add_field("item", 3, {"Item: "});
        finish_as("goods");
        QCOMPARE(site.store.column("select item from goods"), (QVariantList{"Lavender, blue", "Sage", "Thyme"}));
        QCOMPARE(site.store.column("select lastformat from table_list_tbl"), (QVariantList{"True", "True"}));
    }

    void a_map_called_query_passes_the_tests_and_fails_in_the_store()
    {
        finished_site site;
        finish_as("Query");
        QCOMPARE(site.boxes.shown, QStringList());
        QCOMPARE(site.rows_of("table_list_tbl"), 1); // half a map
        QCOMPARE(site.rows_of("format_tbl"), 0);
        QCOMPARE(session.err_form, "mapwizardsave.frm");
        QCOMPARE(session.err_routine, "saveb click");
        QVERIFY(!is_loaded<MapWizardFinalStep_frm>());
        QVERIFY(is_visible<MapWizardStep4_frm>());
        QVERIFY(site.status_lines.last().startsWith("The map Query was not saved whole: "));
        QVERIFY(site.status_lines.last().endsWith(" Its name is taken now: finish again with another one."));
        QCOMPARE(added_fields().size(), 3);
        finish_as("shop"); // by another name it can still be had
        QVERIFY(is_visible<MapWizardFinalStep_frm>());
        QCOMPARE(site.rows_of("shop"), 3);
    }

    void a_subject_that_is_too_long_is_told_beforehand()
    {
        finished_site site;
        maps::map_wizard.map_subject = QString("s").repeated(256);
        the<save>().show();
        QVERIFY(control<QLabel>(the<save>(), "warning_l").isVisible());
        QCOMPARE(control<QLabel>(the<save>(), "warning_l").text(),
                 "This map cannot be saved: the subject of its mail is longer than 255 characters.");
        QVERIFY(control<QPushButton>(the<save>(), "save_b").isEnabled());
        type(the<save>(), "mapname_t", "shop");
        press<save>("save_b");
        QCOMPARE(site.rows_of("table_list_tbl"), 0);
        QCOMPARE(session.err_form, "mapwizardsave.frm");
        QVERIFY(!site.status_lines.last().contains("taken")); // its name is as free as before
        QVERIFY(!is_visible<save>());
        QVERIFY(is_visible<MapWizardStep4_frm>());
    }

    void a_map_that_fits_no_stored_mail_promises_nothing()
    {
        map_wizard_site site;
        site.store_mail("orders", "List", "Ann\tBath\t12");
        open_cutting(site, "orders", 5);
        cut_by("Tab"); // seen here, never taken by the parser
        add_field("person", 1);
        add_field("amount", 3);
        finish_as("list");
        QVERIFY(is_visible<MapWizardFinalStep_frm>());
        QCOMPARE(site.rows_of("list"), 0);
        QCOMPARE(label("done_l"),
                 "The map list is saved. No stored mail fits it yet.\n\nThe Mail Auditor tells of each "
                 "mail why it does not fit.");
    }

    void a_pass_that_fails_after_the_save_is_said()
    {
        finished_site site;
        site.store.add_account("contact", "hello@shop.example");
        site.store.run("drop table contact"); // so the parser fails behind the first account
        finish_as("shop");
        QVERIFY(is_visible<MapWizardFinalStep_frm>());
        QCOMPARE(site.rows_of("shop"), 3);
        QCOMPARE(session.err_routine, "parse_unprocessed_mails");
        QVERIFY(site.status_lines.last().startsWith("Not all mails could be brought over: "));
        QVERIFY(label("done_l").contains("Not all mails could be brought over: "));
    }

    void a_map_without_its_account_is_saved_all_the_same()
    {
        finished_site site;
        in_modal<MapWizardPView_frm>([&site](MapWizardPView_frm &preview) {
            site.store.run("delete from email_tbl");
            in_modal<save>([](save &screen) {
                type(screen, "mapname_t", "shop");
                control<QPushButton>(screen, "save_b").click();
            });
            control<QPushButton>(preview, "save_b").click();
        });
        press<MapWizardStep4_frm>("finish_b");
        QCOMPARE(session.err_form, "mapwizardsave.frm");
        QCOMPARE(site.store.cell("select count(*) from format_tbl"), "3");
        QVERIFY(site.status_lines.last().startsWith("The map shop is saved, but no mail could be brought over: "));
        QVERIFY(!is_loaded<MapWizardFinalStep_frm>());
    }

    void maps_that_cannot_be_read_are_said()
    {
        finished_site site;
        site.store.run("drop table table_list_tbl");
        the<save>().show();
        QCOMPARE(session.err_routine, "form load");
        QVERIFY(site.status_lines.last().startsWith("The existing maps cannot be shown: "));
        type(the<save>(), "mapname_t", "shop");
        press<save>("save_b");
        QCOMPARE(session.err_routine, "saveb click");
        QVERIFY(site.status_lines.last().startsWith("The map was not saved: "));
    }

    void a_separator_map_is_saved_and_takes_its_mails()
    {
        map_wizard_site site;
        site.store_mail("orders", "List", "Ann;Bath;12");
        site.store_mail("orders", "List", "Bob;Cork;3");
        open_cutting(site, "orders", 5);
        cut_by("Semi colon(;)");
        add_field("person", 1);
        add_field("amount", 3);
        finish_as("list");
        QCOMPARE(site.store.cell("select seperator from table_list_tbl"), ";");
        QCOMPARE(site.store.column("select person from list"), (QVariantList{"Ann", "Bob"}));
        QCOMPARE(site.store.column("select amount from list"), (QVariantList{"12", "3"}));
    }

    void a_wait_screen_stands_meanwhile()
    {
        finished_site site;
        QStringList counts;
        in_modal<MapWizardPView_frm>([&counts](MapWizardPView_frm &preview) {
            in_modal<save>([&counts](save &screen) {
                QTimer::singleShot(0,
                                   [&counts] { counts += control<QLabel>(the<mapinprogress_frm>(), "what_l").text(); });
                type(screen, "mapname_t", "shop");
                control<QPushButton>(screen, "save_b").click();
            });
            control<QPushButton>(preview, "save_b").click();
        });
        press<MapWizardStep4_frm>("finish_b");
        QCOMPARE(counts, QStringList{"Mapping mails ..."});
        QVERIFY(is_visible<MapWizardFinalStep_frm>());
    }
};

QTEST_MAIN(map_wizard_save_test)
#include "map_wizard_save_test.moc"
