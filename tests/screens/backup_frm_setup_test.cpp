// The back-up folder as the last step of the first-run setup.
#include "frame/session.h"
#include "platform/settings.h"
#include "screens/frame/Stage3.h"
#include "screens/frame/menuFrm.h"
#include "screens/wizard_band.h"
#include "support/screens_folder_site.h"
#include "support/screens_program_end.h"

#include <QTemporaryDir>

class backup_frm_setup_test : public QObject {
    Q_OBJECT

    int ends = 0;

private slots:
    void init() { count_program_ends(ends); }
    void cleanup()
    {
        forget_screens();
        set_program_end({});
    }

    void in_the_setup_it_makes_the_account_tables_and_opens_the_console();
    void in_the_setup_a_former_back_up_goes_only_with_yes();
    void in_the_setup_a_refused_folder_ends_nothing();
    void in_the_setup_a_failure_leaves_the_screen();
    void in_the_setup_back_goes_to_the_accounts();
    void in_the_setup_cancel_asks_for_what_is_typed_and_ends_the_program();
};

void backup_frm_setup_test::in_the_setup_it_makes_the_account_tables_and_opens_the_console()
{
    folder_site site;
    const QTemporaryDir elsewhere;
    site.store.run("update install_tbl set install=no");
    site.store.run("insert into email_tbl(query,email,table_name) values('orders','o@shop.example','orders')");
    the<backup_frm>().show();
    QVERIFY(!control<wizard_band>(the<backup_frm>(), "band").step().isEmpty());
    site.choose(elsewhere.filePath(""));
    QCOMPARE(site.boxes.shown, QStringList());
    QCOMPARE(site.rows_of("orders"), 0); // the table is there
    QCOMPARE(site.store.cell("select install from install_tbl"), "True");
    QVERIFY(live_widget(typeid(menuFrm)));
    QVERIFY(!is_visible<backup_frm>());
    delete live_widget(typeid(menuFrm));
}

void backup_frm_setup_test::in_the_setup_a_former_back_up_goes_only_with_yes()
{
    folder_site site;
    const QTemporaryDir elsewhere;
    const QString copy = elsewhere.filePath("data/Tessaly.mdb");
    QDir().mkpath(elsewhere.filePath("data"));
    session.store_connection->copy_store(copy);
    site.store.run("update install_tbl set install=no");
    site.boxes.will_say_no();
    site.choose(elsewhere.path());
    QCOMPARE(site.boxes.shown.size(), 1);
    const QString asked = site.boxes.shown[0];
    QVERIFY2(asked.startsWith("There is a back-up of Tessaly of "), qPrintable(asked));
    QVERIFY2(asked.contains(elsewhere.path()) && asked.contains("Restore from Backup"), qPrintable(asked));
    QVERIFY(site.boxes.boxes[0].no_is_default);
    QVERIFY(QFile::exists(copy));
    QCOMPARE(GetSetting("main", "backup"), QString());
    QCOMPARE(site.store.cell("select install from install_tbl"), "False");
    QVERIFY(is_visible<backup_frm>());
    site.boxes.will_say_yes();
    site.click("next_b");
    QVERIFY(!QFile::exists(copy));
    QCOMPARE(site.store.cell("select install from install_tbl"), "True");
    delete live_widget(typeid(menuFrm));
}

void backup_frm_setup_test::in_the_setup_a_refused_folder_ends_nothing()
{
    folder_site site;
    site.store.run("update install_tbl set install=no");
    site.choose("");
    QCOMPARE(site.store.cell("select install from install_tbl"), "False");
    QVERIFY(!live_widget(typeid(menuFrm)));
}

void backup_frm_setup_test::in_the_setup_a_failure_leaves_the_screen()
{
    folder_site site;
    const QTemporaryDir elsewhere;
    site.store.run("update install_tbl set install=no");
    site.store.run("insert into email_tbl(query,email,table_name) values('sign','o@shop.example','sign')");
    site.choose(elsewhere.filePath(""));
    QCOMPARE(site.boxes.shown.size(), 1);
    QVERIFY2(site.boxes.shown[0].startsWith("The setup could not be finished: "), qPrintable(site.boxes.shown[0]));
    QCOMPARE(session.err_form, "Backup_frm.frm");
    QCOMPARE(site.store.cell("select install from install_tbl"), "False");
    QVERIFY(is_visible<backup_frm>());
}

void backup_frm_setup_test::in_the_setup_back_goes_to_the_accounts()
{
    folder_site site;
    site.store.run("update install_tbl set install=no");
    the<backup_frm>().show();
    QCOMPARE(control<wizard_band>(the<backup_frm>(), "band").step(), "Step 3 of 3");
    QCOMPARE(control<QPushButton>(the<backup_frm>(), "next_b").accessibleName(), "Finish");
    site.click("back_b");
    QVERIFY(is_visible<Stage3>());
    QVERIFY(!is_visible<backup_frm>());
    QCOMPARE(ends, 0);
}

void backup_frm_setup_test::in_the_setup_cancel_asks_for_what_is_typed_and_ends_the_program()
{
    folder_site site;
    site.store.run("update install_tbl set install=no");
    the<backup_frm>().show();
    control<QLineEdit>(the<backup_frm>(), "Folder_t").setText("/home/ann");
    site.boxes.will_say_no();
    site.click("cancel_b");
    QCOMPARE(site.boxes.shown.size(), 1);
    QCOMPARE(ends, 0);
    site.boxes.will_say_yes();
    site.click("cancel_b");
    QCOMPARE(ends, 1);
    QCOMPARE(site.store.cell("select install from install_tbl"), "False");
}

QTEST_MAIN(backup_frm_setup_test)
#include "backup_frm_setup_test.moc"
