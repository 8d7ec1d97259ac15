// Into the Mail Mapping Wizard and out of it: the console's command, the splash, the welcome, and Quit on every step.
#include "frame/status.h"
#include "screens/frame/frmSplash.h"
#include "screens/frame/menuFrm.h"
#include "screens/maps/MapWizardFinalStep_frm.h"
#include "screens/maps/MapWizardStep1_frm.h"
#include "screens/maps/MapWizardStep2_frm.h"
#include "screens/maps/MapWizardStep4_frm.h"
#include "screens/maps/mapWizardStep3_frm.h"
#include "support/screens_map_wizard.h"

#include <QAction>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTest>

namespace {

const QString quit_question =
    "If you exit the Wizard without setting-up the application, you would be reminded again the next time you launch "
    "the application.\r\n\r\nWould you like to quit the wizard?";

const QString back_question =
    "You have not saved the mapped format. You will be loosing all data , if you go back from here";

void add_a_map(map_wizard_site &site)
{
    site.store.add_map("shop", site.account, "Sale", {{.name = "city"}});
}

screen &opened_step(const QString &name)
{
    if (name == "step 1")
        return the<MapWizardStep1_frm>();
    if (name == "step 2")
        return the<MapWizardStep2_frm>();
    if (name == "step 3")
        return the<mapWizardStep3_frm>();
    return the<MapWizardStep4_frm>();
}

void open_step(map_wizard_site &site, const QString &name)
{
    if (name.startsWith("step 4"))
        open_cutting(site, "orders", 1);
    else
        opened_step(name).show();
    if (name.endsWith("(B)")) {
        cut_by_lines();
        add_field("city", 2);
    }
}

void steps_data()
{
    QTest::addColumn<QString>("step");
    for (const char *step : {"step 1", "step 2", "step 3", "step 4 (A)", "step 4 (B)"})
        QTest::newRow(step) << step;
}

}

class map_wizard_start_test : public QObject {
    Q_OBJECT
private slots:
    void without_a_map_the_command_opens_the_welcome()
    {
        map_wizard_site site;
        menuFrm console;
        console.show();
        control<QAction>(console, "mmw").trigger();
        QVERIFY(is_visible<MapWizardStep1_frm>());
        QVERIFY(!is_visible<MapWizardStep2_frm>());
        QCOMPARE(the<MapWizardStep1_frm>().windowTitle(), "Welcome to Step-by-step Wizard for setting up Tessaly");
    }

    void with_a_map_the_command_opens_the_accounts()
    {
        map_wizard_site site;
        add_a_map(site);
        menuFrm console;
        console.show();
        control<QAction>(console, "mmw").trigger();
        QVERIFY(!is_visible<MapWizardStep1_frm>());
        QVERIFY(is_visible<MapWizardStep2_frm>());
        QCOMPARE(the<MapWizardStep2_frm>().windowTitle(), "Map mails Wizard-Step1");
    }

    void an_open_wizard_comes_to_the_front_as_it_is()
    {
        map_wizard_site site;
        menuFrm console;
        console.show();
        open_cutting(site, "orders", 1);
        cut_by_lines();
        add_field("city", 2);
        control<QAction>(console, "mauditor_mnu").trigger();
        control<QAction>(console, "mmw").trigger();
        QVERIFY(!is_visible<MapWizardStep1_frm>());
        QCOMPARE(control<QMdiArea>(console, "area").activeSubWindow()->widget(), &the<MapWizardStep4_frm>());
        QCOMPARE(added_fields(), QStringList{"city|Line2||0|City: Bath"});
    }

    void after_congratulations_the_command_begins_anew()
    {
        map_wizard_site site;
        add_a_map(site);
        maps::map_wizard.mail_id = "1";
        the<MapWizardFinalStep_frm>().show();
        menuFrm console;
        console.show();
        control<QAction>(console, "mmw").trigger();
        QVERIFY(!is_visible<MapWizardFinalStep_frm>());
        QVERIFY(is_visible<MapWizardStep2_frm>());
        QCOMPARE(maps::map_wizard.mail_id, "");
    }

    void a_closed_store_is_opened_anew()
    {
        map_wizard_site site;
        add_a_map(site);
        menuFrm console;
        console.show();
        session.store_connection->Close();
        control<QAction>(console, "mmw").trigger();
        QVERIFY(is_visible<MapWizardStep2_frm>());
    }

    void the_splash_opens_the_welcome_while_there_is_no_map()
    {
        map_wizard_site site;
        the<frmSplash>().show();
        QTest::keyClick(&the<frmSplash>(), Qt::Key_A);
        QVERIFY(is_visible<MapWizardStep1_frm>());
    }

    void the_splash_opens_nothing_with_a_map()
    {
        map_wizard_site site;
        add_a_map(site);
        the<frmSplash>().show();
        QTest::keyClick(&the<frmSplash>(), Qt::Key_A);
        QVERIFY(!is_loaded<MapWizardStep1_frm>());
        QVERIFY(!is_loaded<MapWizardStep2_frm>());
    }

    void the_splash_brings_an_open_wizard_to_the_front_data()
    {
        QTest::addColumn<bool>("by_menu");
        QTest::newRow("dismissed late") << false;
        QTest::newRow("shown again by Show Tips") << true;
    }
    void the_splash_brings_an_open_wizard_to_the_front()
    {
        QFETCH(bool, by_menu);
        map_wizard_site site;
        menuFrm console;
        console.show();
        if (!by_menu)
            the<frmSplash>().show();
        open_cutting(site, "orders", 2);
        cut_by_lines();
        add_field("city", 2);
        control<QAction>(console, "mauditor_mnu").trigger();
        if (by_menu)
            control<QAction>(console, "showtips").trigger();
        QVERIFY(is_visible<frmSplash>());
        QTest::keyClick(&the<frmSplash>(), Qt::Key_A);
        QVERIFY(!is_loaded<frmSplash>());
        QVERIFY(!is_loaded<MapWizardStep1_frm>());
        QCOMPARE(control<QMdiArea>(console, "area").activeSubWindow()->widget(), &the<MapWizardStep4_frm>());
        QCOMPARE(added_fields(), QStringList{"city|Line2||0|City: Cork"});
        QCOMPARE(maps::map_wizard.mail_id, "2");
    }

    void a_command_that_cannot_read_the_maps_says_so()
    {
        map_wizard_site site;
        menuFrm console;
        console.show();
        QStringList lines;
        set_status_sink([&lines](const QString &line) { lines += line; }); // the console has one of its own
        site.store.run("drop table table_list_tbl");
        control<QAction>(console, "mmw").trigger();
        QVERIFY(!is_loaded<MapWizardStep1_frm>());
        QVERIFY(!is_loaded<MapWizardStep2_frm>());
        QCOMPARE(session.err_form, "menuFrm.frm");
        QCOMPARE(lines.size(), 1);
        QVERIFY(lines[0].startsWith("The Mail Mapping Wizard cannot be opened: "));
    }

    void next_leads_from_the_welcome_to_the_accounts()
    {
        map_wizard_site site;
        the<MapWizardStep1_frm>().show();
        press<MapWizardStep1_frm>("next_b");
        QVERIFY(!is_loaded<MapWizardStep1_frm>());
        QVERIFY(is_visible<MapWizardStep2_frm>());
    }

    void back_leads_from_the_accounts_to_the_welcome()
    {
        map_wizard_site site;
        the<MapWizardStep2_frm>().show();
        press<MapWizardStep2_frm>("back_b");
        QVERIFY(!is_loaded<MapWizardStep2_frm>());
        QVERIFY(is_visible<MapWizardStep1_frm>());
    }

    void quit_without_a_map_asks_and_stays_on_no_data() { steps_data(); }
    void quit_without_a_map_asks_and_stays_on_no()
    {
        QFETCH(QString, step);
        map_wizard_site site;
        open_step(site, step);
        site.boxes.will_say_no();
        control<QPushButton>(opened_step(step), "cancel_b").click();
        QCOMPARE(site.boxes.shown, QStringList{quit_question});
        QCOMPARE(site.boxes.boxes[0].kind, message_kind::yes_no);
        QVERIFY(opened_step(step).shown());
        QCOMPARE(maps::map_wizard.MapWHiddenA_frm.size(), size_t(step.endsWith("(B)") ? 1 : 0));
    }

    void quit_without_a_map_closes_on_yes_data() { steps_data(); }
    void quit_without_a_map_closes_on_yes()
    {
        QFETCH(QString, step);
        map_wizard_site site;
        open_step(site, step);
        site.boxes.will_say_yes();
        control<QPushButton>(opened_step(step), "cancel_b").click();
        QCOMPARE(site.boxes.shown, QStringList{quit_question});
        QVERIFY(!opened_step(step).shown());
        QCOMPARE(maps::map_wizard.MapWHiddenA_frm.size(), size_t(0));
        QCOMPARE(site.rows_of("table_list_tbl"), 0);
    }

    void quit_with_a_map_closes_without_a_question_data() { steps_data(); }
    void quit_with_a_map_closes_without_a_question()
    {
        QFETCH(QString, step);
        map_wizard_site site;
        add_a_map(site);
        open_step(site, step);
        control<QPushButton>(opened_step(step), "cancel_b").click();
        QCOMPARE(site.boxes.shown, QStringList());
        QVERIFY(!opened_step(step).shown());
        QCOMPARE(maps::map_wizard.MapWHiddenA_frm.size(), size_t(0));
        QCOMPARE(maps::map_wizard.mail_id, "");
        QCOMPARE(site.rows_of("table_list_tbl"), 1); // and nothing was saved
        QCOMPARE(site.rows_of("format_tbl"), 1);
    }

    void escape_and_the_cross_are_quit_data() { steps_data(); }
    void escape_and_the_cross_are_quit()
    {
        QFETCH(QString, step);
        map_wizard_site site;
        open_step(site, step);
        screen &opened = opened_step(step);
        const bool has_fields = step.endsWith("(B)"); // there Escape asks as Back does
        site.boxes.will_say_no();
        QTest::keyClick(opened.focusWidget(), Qt::Key_Escape);
        QVERIFY(opened.shown());
        site.boxes.will_say_no();
        QVERIFY(!opened.close());
        QVERIFY(opened.shown());
        site.boxes.will_say_yes();
        opened.close();
        QVERIFY(!opened_step(step).shown());
        QCOMPARE(site.boxes.shown,
                 (QStringList{has_fields ? back_question : quit_question, quit_question, quit_question}));
    }

    void escape_over_the_fields_drops_none_without_a_question()
    {
        map_wizard_site site;
        add_a_map(site); // so Quit would ask nothing
        open_step(site, "step 4 (B)");
        site.boxes.will_say_no();
        QTest::keyClick(the<MapWizardStep4_frm>().focusWidget(), Qt::Key_Escape);
        QCOMPARE(site.boxes.shown, QStringList{back_question});
        QVERIFY(is_visible<MapWizardStep4_frm>());
        QCOMPARE(added_fields(), QStringList{"city|Line2||0|City: Bath"});
    }

    void the_cross_of_the_sub_window_is_quit()
    {
        map_wizard_site site;
        menuFrm console;
        console.show();
        the<MapWizardStep1_frm>().show();
        QMdiSubWindow *window = control<QMdiArea>(console, "area").activeSubWindow();
        site.boxes.will_say_no();
        window->close();
        QVERIFY(is_visible<MapWizardStep1_frm>());
        QVERIFY(window->isVisible());
        site.boxes.will_say_yes();
        window->close();
        QVERIFY(!is_visible<MapWizardStep1_frm>());
    }

    void a_store_that_cannot_be_read_holds_nobody()
    {
        map_wizard_site site;
        the<MapWizardStep1_frm>().show();
        site.store.run("drop table table_list_tbl");
        press<MapWizardStep1_frm>("cancel_b");
        QVERIFY(!is_visible<MapWizardStep1_frm>());
        QCOMPARE(session.err_form, "mapwizardstep1.frm");
    }
};

QTEST_MAIN(map_wizard_start_test)
#include "map_wizard_start_test.moc"
