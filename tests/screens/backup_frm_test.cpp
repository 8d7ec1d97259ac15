// The back-up folder: what is refused, asked, made, kept and deleted, in the setup and afterwards.
#include "frame/session.h"
#include "frame/store.h"
#include "platform/app_folder.h"
#include "platform/outside_effects.h"
#include "platform/run_time_error.h"
#include "platform/settings.h"
#include "screens/frame/Stage3.h"
#include "screens/frame/backup_frm.h"
#include "screens/frame/closing.h"
#include "screens/frame/menuFrm.h"
#include "screens/screen.h"
#include "screens/wizard_band.h"
#include "support/screens_driver.h"
#include "support/screens_program_end.h"
#include "support/screens_site.h"
#include "support/scripted_dialogs.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

namespace {

struct folder_site : screens_site {
    folder_site() { QDir().mkpath(file("safe")); }

    void click(const char *button)
    {
        QTest::mouseClick(&control<QPushButton>(the<backup_frm>(), button), Qt::LeftButton);
    }
    // Opens the screen, types the path, and presses next_b.
    void choose(const QString &path)
    {
        the<backup_frm>().show();
        control<QLineEdit>(the<backup_frm>(), "Folder_t").setText(path);
        click("next_b");
    }
    void write(const QString &name, const QByteArray &text) const
    {
        QDir().mkpath(QFileInfo(file(name)).path());
        QFile made(file(name));
        if (!made.open(QIODevice::WriteOnly) || made.write(text) != text.size())
            qFatal("cannot write %s", qPrintable(name));
    }
    QByteArray read(const QString &name) const
    {
        QFile found(file(name));
        return found.open(QIODevice::ReadOnly) ? found.readAll() : QByteArray("(none)");
    }
    QStringList names(const QString &name) const
    {
        return QDir(file(name))
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
    }
    QString make_it(const QString &path) const { return "Do you want to create a new folder called " + path + " ?"; }
    QString emptied(const QString &strangers) const
    {
        return "The folders \"data\" and \"html\" in " + file("safe") +
               " are emptied for the back-up, and they hold something else:\n\n" + strangers +
               "\n\nDo you want to delete all that is in them?";
    }
};

}

class backup_frm_test : public QObject {
    Q_OBJECT

    int ends = 0;

private slots:
    void init() { count_program_ends(ends); }
    void cleanup()
    {
        forget_screens();
        set_program_end({});
    }

    void the_setting_is_shown();
    void an_empty_folder_is_refused();
    void a_path_without_a_drive_is_refused_data();
    void a_path_without_a_drive_is_refused();
    void a_path_that_leads_through_a_file_is_refused();
    void the_programs_folder_is_refused_data();
    void the_programs_folder_is_refused();
    void a_folder_whose_html_holds_the_program_is_refused();
    void a_folder_that_is_there_is_made_ready_and_kept();
    void a_missing_folder_is_asked_for_and_made();
    void no_to_a_missing_folder_changes_nothing();
    void a_former_back_up_goes_without_a_question_and_is_told_of_before();
    void anything_else_is_named_and_no_leaves_all();
    void anything_else_goes_with_yes();
    void what_is_no_back_up_of_ours_data();
    void what_is_no_back_up_of_ours();
    void many_strangers_are_not_all_named();
    void links_go_and_what_they_lead_to_stays();
    void a_folder_that_is_a_link_itself_works();
    void enter_in_the_question_deletes_nothing();
    void a_failure_on_the_way_puts_all_back();
    void what_a_kill_left_comes_back_before_anything_is_asked();
    void what_cannot_come_back_is_told_and_stays();
    void a_failure_is_told_and_logged();
    void browsing_tells_what_was_chosen();
    void browsing_without_a_choice_tells_so();
    void in_the_setup_it_makes_the_account_tables_and_opens_the_console();
    void in_the_setup_a_former_back_up_goes_only_with_yes();
    void in_the_setup_a_refused_folder_ends_nothing();
    void in_the_setup_a_failure_leaves_the_screen();
    void in_the_setup_back_goes_to_the_accounts();
    void in_the_setup_cancel_asks_for_what_is_typed_and_ends_the_program();
    void afterwards_the_console_opens_it();
    void cancel_changes_nothing();
};

void backup_frm_test::the_setting_is_shown()
{
    folder_site site;
    SaveSetting("main", "backup", "/home/ann/back-ups");
    the<backup_frm>().show();
    QCOMPARE(control<QLineEdit>(the<backup_frm>(), "Folder_t").text(), "/home/ann/back-ups");
    QVERIFY(control<QLabel>(the<backup_frm>(), "former_l").isHidden());
}

void backup_frm_test::an_empty_folder_is_refused()
{
    folder_site site;
    site.choose("");
    QCOMPARE(site.boxes.shown, QStringList{"Please specify a folder"});
    QVERIFY(is_visible<backup_frm>());
}

void backup_frm_test::a_path_without_a_drive_is_refused_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("a bare name") << "backup";
    QTest::newRow("another system's drive") << "C:\\backup";
    QTest::newRow("a blank") << " ";
    QTest::newRow("a path from here") << "../backup";
}

void backup_frm_test::a_path_without_a_drive_is_refused()
{
    QFETCH(QString, path);
    folder_site site;
    site.choose(path);
    QCOMPARE(site.boxes.shown, QStringList{"Invalid Path"});
    QCOMPARE(GetSetting("main", "backup"), QString());
}

void backup_frm_test::a_path_that_leads_through_a_file_is_refused()
{
    folder_site site;
    set_app_folder("/no/such/program");
    site.write("safe/letter", "dear");
    QVERIFY(QFile::link("nowhere", site.file("safe/dangling")));
    for (const char *path : {"safe/letter", "safe/letter/below", "safe/dangling"})
        site.choose(site.file(path));
    QCOMPARE(site.boxes.shown, (QStringList{"Invalid path", "Invalid path", "Invalid path"}));
    QCOMPARE(site.read("safe/letter"), "dear");
}

void backup_frm_test::the_programs_folder_is_refused_data()
{
    QTest::addColumn<QString>("below");
    QTest::newRow("itself") << "";
    QTest::newRow("with a slash behind it") << "/";
    QTest::newRow("a folder in it") << "/forms";
    QTest::newRow("a folder in it that is not there") << "/new/one";
    QTest::newRow("by a detour") << "/forms/../../program";
    QTest::newRow("through a link") << "/../link";
}

void backup_frm_test::the_programs_folder_is_refused()
{
    QFETCH(QString, below);
    folder_site site;
    QDir().mkpath(site.file("program/forms"));
    QVERIFY(QFile::link(site.file("program/forms"), site.file("link")));
    set_app_folder(site.file("program"));
    site.choose(site.file("program") + below);
    QCOMPARE(site.boxes.shown, QStringList{"Invalid Path"});
    QCOMPARE(site.names("program"), QStringList{"forms"});
}

void backup_frm_test::a_folder_whose_html_holds_the_program_is_refused()
{
    folder_site site;
    for (const char *program : {"safe/html", "safe/data/deep/program"}) {
        site.write(QString(program) + "/precious", "dear");
        set_app_folder(site.file(program));
        site.choose(site.file("safe"));
        QCOMPARE(site.boxes.shown.takeFirst(), "Invalid Path");
        QCOMPARE(site.read(QString(program) + "/precious"), "dear");
    }
    QVERIFY(site.boxes.shown.isEmpty());
}

void backup_frm_test::a_folder_that_is_there_is_made_ready_and_kept()
{
    folder_site site;
    site.write("safe/letter", "stays");
    set_app_folder(site.file("program"));
    QDir().mkpath(site.file("program"));
    site.choose(site.file("safe"));
    QCOMPARE(site.boxes.shown, QStringList());
    QCOMPARE(site.names("safe"), (QStringList{"data", "html", "letter"}));
    QCOMPARE(GetSetting("main", "backup"), site.file("safe"));
    QCOMPARE(GetSetting("main", "install_location"), site.file("program"));
    QVERIFY(!is_visible<backup_frm>());
}

void backup_frm_test::a_missing_folder_is_asked_for_and_made()
{
    folder_site site;
    set_app_folder("/no/such/program");
    const QString path = site.file("new/and/deep");
    site.boxes.will_say_yes();
    site.choose(path);
    QCOMPARE(site.boxes.shown, QStringList{site.make_it(path)});
    QVERIFY(site.boxes.boxes[0].kind == message_kind::yes_no);
    QCOMPARE(site.names("new/and/deep"), (QStringList{"data", "html"}));
    QCOMPARE(GetSetting("main", "backup"), path);
}

void backup_frm_test::no_to_a_missing_folder_changes_nothing()
{
    folder_site site;
    set_app_folder("/no/such/program");
    site.boxes.will_say_no();
    site.choose(site.file("new"));
    QVERIFY(!QDir(site.file("new")).exists());
    QCOMPARE(GetSetting("main", "backup"), QString());
    QVERIFY(is_visible<backup_frm>());
}

void backup_frm_test::a_former_back_up_goes_without_a_question_and_is_told_of_before()
{
    folder_site site;
    site.write("program/forms/contact/page.htm", "page");
    site.write("safe/html/contact/page.htm", "an older page");
    site.write("safe/data/Tessaly.mdb.tmp", "of a copy that was broken off");
    site.write("safe/data/Tessaly.mdb.tmp-journal", "of a copy that was broken off");
    session.store_connection->copy_store(site.file("copy.mdb"));
    QVERIFY(QFile::rename(site.file("copy.mdb"), site.file("safe/data/Tessaly.mdb")));
    set_app_folder(site.file("program"));
    the<backup_frm>().show();
    auto &told = control<QLabel>(the<backup_frm>(), "former_l");
    QVERIFY(!told.isVisible());
    control<QLineEdit>(the<backup_frm>(), "Folder_t").setText(site.file("safe"));
    QVERIFY(told.isVisible());
    QVERIFY2(told.text().startsWith("This folder holds a back-up of "), qPrintable(told.text()));
    site.click("next_b");
    QCOMPARE(site.boxes.shown, QStringList());
    QCOMPARE(site.names("safe/data"), QStringList());
    QCOMPARE(site.names("safe/html"), QStringList());
}

void backup_frm_test::anything_else_is_named_and_no_leaves_all()
{
    folder_site site;
    set_app_folder("/no/such/program");
    site.write("safe/html/index.html", "my site");
    site.write("safe/data/figures.csv", "1,2");
    site.boxes.will_say_no();
    site.choose(site.file("safe"));
    QCOMPARE(site.boxes.shown, QStringList{site.emptied("data/figures.csv\nhtml/index.html")});
    QCOMPARE(site.read("safe/html/index.html"), "my site");
    QCOMPARE(site.read("safe/data/figures.csv"), "1,2");
    QCOMPARE(GetSetting("main", "backup"), QString());
    QVERIFY(is_visible<backup_frm>());
}

void backup_frm_test::anything_else_goes_with_yes()
{
    folder_site site;
    set_app_folder("/no/such/program");
    site.write("safe/html/deep/index.html", "my site");
    site.boxes.will_say_yes();
    site.choose(site.file("safe"));
    QCOMPARE(site.boxes.shown, QStringList{site.emptied("html/deep")});
    QCOMPARE(site.names("safe/html"), QStringList());
    QCOMPARE(GetSetting("main", "backup"), site.file("safe"));
}

void backup_frm_test::what_is_no_back_up_of_ours_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("named");
    QTest::newRow("a file of the copy's name that is no store") << "data/Tessaly.mdb"
                                                                << "data/Tessaly.mdb";
    QTest::newRow("a folder of the copy's name") << "data/Tessaly.mdb/x"
                                                 << "data/Tessaly.mdb";
    QTest::newRow("a file beside a form's copy") << "html/contact/letter"
                                                 << "html/contact/letter";
    QTest::newRow("a folder where the form has a file") << "html/contact/page.htm/x"
                                                        << "html/contact/page.htm";
    QTest::newRow("a file where there is a form") << "html/contact"
                                                  << "html/contact";
    QTest::newRow("a form that is gone") << "html/older/page.htm"
                                         << "html/older";
    QTest::newRow("a file beside the forms") << "html/letter"
                                             << "html/letter";
    QTest::newRow("a file beside the forms that the program has too") << "html/beside.htm"
                                                                      << "html/beside.htm";
    QTest::newRow("a folder of a broken off copy's name") << "data/Tessaly.mdb.tmp/x"
                                                          << "data/Tessaly.mdb.tmp";
    QTest::newRow("a name that only begins like a broken off copy") << "data/Tessaly.mdb.tmp2"
                                                                    << "data/Tessaly.mdb.tmp2";
    QTest::newRow("a file called data") << "data"
                                        << "data";
    QTest::newRow("a file called html") << "html"
                                        << "html";
}

void backup_frm_test::what_is_no_back_up_of_ours()
{
    QFETCH(QString, file);
    QFETCH(QString, named);
    folder_site site;
    site.write("program/forms/contact/page.htm", "page");
    site.write("program/forms/beside.htm", "not copied");
    set_app_folder(site.file("program"));
    site.write("safe/" + file, "not ours");
    site.boxes.will_say_no();
    site.choose(site.file("safe"));
    QCOMPARE(site.boxes.shown, QStringList{site.emptied(named)});
    QCOMPARE(site.read("safe/" + file), "not ours");
    site.boxes.will_say_yes();
    site.click("next_b");
    QCOMPARE(site.names("safe"), (QStringList{"data", "html"}));
    QCOMPARE(site.names("safe/data") + site.names("safe/html"), QStringList());
}

void backup_frm_test::many_strangers_are_not_all_named()
{
    folder_site site;
    set_app_folder("/no/such/program");
    for (int number = 1; number <= 20; ++number)
        site.write(QString("safe/html/%1").arg(number, 2, 10, QChar('0')), "x");
    site.boxes.will_say_no();
    site.choose(site.file("safe"));
    QCOMPARE(site.boxes.shown,
             QStringList{site.emptied("html/01\nhtml/02\nhtml/03\nhtml/04\nhtml/05\nhtml/06\nhtml/07\n"
                                      "html/08\n...")});
}

void backup_frm_test::links_go_and_what_they_lead_to_stays()
{
    folder_site site;
    set_app_folder("/no/such/program");
    site.write("precious/letter", "dear");
    QVERIFY(QFile::link(site.file("precious"), site.file("safe/data")));
    QDir().mkpath(site.file("safe/html"));
    QVERIFY(QFile::link(site.file("precious"), site.file("safe/html/link")));
    site.boxes.will_say_yes();
    site.choose(site.file("safe"));
    QCOMPARE(site.boxes.shown, QStringList{site.emptied("data\nhtml/link")});
    QCOMPARE(site.read("precious/letter"), "dear");
    QVERIFY(!QFileInfo(site.file("safe/data")).isSymLink());
    QCOMPARE(site.names("safe/data") + site.names("safe/html"), QStringList());
}

void backup_frm_test::a_folder_that_is_a_link_itself_works()
{
    folder_site site;
    set_app_folder("/no/such/program");
    QVERIFY(QFile::link(site.file("safe"), site.file("link")));
    site.choose(site.file("link"));
    QCOMPARE(site.boxes.shown, QStringList());
    QCOMPARE(site.names("safe"), (QStringList{"data", "html"}));
    QCOMPARE(GetSetting("main", "backup"), site.file("link"));
}

void backup_frm_test::enter_in_the_question_deletes_nothing()
{
    folder_site site;
    set_app_folder("/no/such/program");
    site.write("safe/html/index.html", "my site");
    site.boxes.will_say_no();
    site.choose(site.file("safe"));
    QVERIFY(site.boxes.boxes[0].no_is_default);
    QVERIFY(site.boxes.boxes[0].icon == message_icon::exclamation);
}

// Both are put aside, both are made, and the setting is saved; then the folder is ready, whatever cannot be deleted.
void backup_frm_test::a_failure_on_the_way_puts_all_back()
{
    folder_site site;
    set_app_folder("/no/such/program");
    site.write("safe/data/figures.csv", "1,2");
    site.write("safe/html/index.html", "my site");
    site.write("safe/html.former/mine", "stays");
    for (int failing = 1; failing <= 6; ++failing) {
        QCOMPARE(site.names("safe"), (QStringList{"data", "html", "html.former"}));
        QCOMPARE(site.read("safe/data/figures.csv"), "1,2");
        QCOMPARE(site.read("safe/html/index.html"), "my site");
        QCOMPARE(GetSetting("main", "backup"), QString());
        int effects = 0;
        site.boxes.shown.clear();
        site.boxes.will_say_yes();
        const int refusing = on_outside_effect([&] {
            if (site.boxes.shown.size() == 1 && ++effects == failing)
                throw run_time_error{61, "Disk full"};
        });
        site.choose(site.file("safe"));
        forget_outside_effect(refusing);
        QCOMPARE(site.boxes.shown.size(), 2);
        if (failing < 6)
            QCOMPARE(site.boxes.shown[1], "The folder could not be made ready: Disk full");
    }
    QVERIFY2(site.boxes.shown[1].endsWith("is now here:\n\n" + site.file("safe/data.former")),
             qPrintable(site.boxes.shown[1]));
    QCOMPARE(GetSetting("main", "backup"), site.file("safe"));
    QCOMPARE(site.names("safe"), (QStringList{"data", "data.former", "html", "html.former"}));
    QCOMPARE(site.names("safe/data") + site.names("safe/html"), QStringList());
    QCOMPARE(site.read("safe/data.former/figures.csv"), "1,2");
    QCOMPARE(site.read("safe/html.former/mine"), "stays");
}

void backup_frm_test::what_a_kill_left_comes_back_before_anything_is_asked()
{
    folder_site site;
    set_app_folder("/no/such/program");
    site.write("safe/data.put aside by Tessaly/figures.csv", "1,2");
    site.write("safe/html.put aside by Tessaly/index.html", "my site");
    QDir().mkpath(site.file("safe/html")); // as the kill left it
    site.boxes.will_say_no();
    site.choose(site.file("safe"));
    QCOMPARE(site.boxes.shown.size(), 1);
    QVERIFY2(site.boxes.shown[0].contains("data/figures.csv\nhtml/index.html"), qPrintable(site.boxes.shown[0]));
    QCOMPARE(site.names("safe"), (QStringList{"data", "html"}));
    QCOMPARE(site.read("safe/data/figures.csv"), "1,2");
    QCOMPARE(site.read("safe/html/index.html"), "my site");
}

void backup_frm_test::what_cannot_come_back_is_told_and_stays()
{
    folder_site site;
    set_app_folder("/no/such/program");
    site.write("safe/data.put aside by Tessaly/figures.csv", "1,2");
    site.write("safe/data/new.csv", "3");
    site.boxes.will_say_no();
    site.choose(site.file("safe"));
    QCOMPARE(site.boxes.shown.size(), 2);
    QVERIFY2(site.boxes.shown[0].endsWith("\n\n" + site.file("safe/data.put aside by Tessaly")),
             qPrintable(site.boxes.shown[0]));
    QCOMPARE(site.read("safe/data.put aside by Tessaly/figures.csv"), "1,2");
    QCOMPARE(site.read("safe/data/new.csv"), "3");
}

void backup_frm_test::a_failure_is_told_and_logged()
{
    folder_site site;
    set_app_folder(site.file("program"));
    QDir().mkpath(site.file("program"));
    site.choose("/proc/1"); // where nobody can make a folder
    QCOMPARE(site.boxes.shown.size(), 1);
    QVERIFY2(site.boxes.shown[0].startsWith("The folder could not be made ready: "), qPrintable(site.boxes.shown[0]));
    QCOMPARE(session.err_form, "Backup_frm.frm");
    QCOMPARE(session.err_routine, "next_b");
    QCOMPARE(GetSetting("main", "backup"), QString());
    QVERIFY(is_visible<backup_frm>());
}

void backup_frm_test::browsing_tells_what_was_chosen()
{
    folder_site site;
    scripted_dialogs dialogs;
    SaveSetting("main", "backup", "/home/ann");
    dialogs.choices = {site.file("safe")};
    the<backup_frm>().show();
    site.click("browserforfolders");
    QCOMPARE(dialogs.asked, QStringList{"/home/ann|folder"});
    QCOMPARE(site.boxes.shown, QStringList{"Folder Selected: " + site.file("safe")});
    QCOMPARE(control<QLineEdit>(the<backup_frm>(), "Folder_t").text(), site.file("safe"));
}

void backup_frm_test::browsing_without_a_choice_tells_so()
{
    folder_site site;
    scripted_dialogs dialogs;
    dialogs.choices = {std::nullopt};
    the<backup_frm>().show();
    site.click("browserforfolders");
    QCOMPARE(site.boxes.shown, QStringList{"No folder selected !"});
    QCOMPARE(control<QLineEdit>(the<backup_frm>(), "Folder_t").text(), QString());
}

void backup_frm_test::in_the_setup_it_makes_the_account_tables_and_opens_the_console()
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

void backup_frm_test::in_the_setup_a_former_back_up_goes_only_with_yes()
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

void backup_frm_test::in_the_setup_a_refused_folder_ends_nothing()
{
    folder_site site;
    site.store.run("update install_tbl set install=no");
    site.choose("");
    QCOMPARE(site.store.cell("select install from install_tbl"), "False");
    QVERIFY(!live_widget(typeid(menuFrm)));
}

void backup_frm_test::in_the_setup_a_failure_leaves_the_screen()
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

void backup_frm_test::in_the_setup_back_goes_to_the_accounts()
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

void backup_frm_test::in_the_setup_cancel_asks_for_what_is_typed_and_ends_the_program()
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

void backup_frm_test::afterwards_the_console_opens_it()
{
    folder_site site;
    menuFrm console;
    console.show();
    control<QAction>(console, "bkp_folder_mnu").trigger();
    QVERIFY(is_visible<backup_frm>());
    QCOMPARE(control<wizard_band>(the<backup_frm>(), "band").step(), QString());
    QVERIFY(!control<QPushButton>(the<backup_frm>(), "back_b").isVisible());
    the<backup_frm>().unload();
}

void backup_frm_test::cancel_changes_nothing()
{
    folder_site site;
    menuFrm console;
    keep_live_widget(typeid(menuFrm), &console);
    the<backup_frm>().show();
    control<QLineEdit>(the<backup_frm>(), "Folder_t").setText(site.file("safe"));
    site.click("cancel_b");
    QVERIFY(!is_visible<backup_frm>());
    QCOMPARE(ends, 0);
    QCOMPARE(site.boxes.shown, QStringList());
    QCOMPARE(site.names("safe"), QStringList());
    QCOMPARE(GetSetting("main", "backup"), QString());
}

QTEST_MAIN(backup_frm_test)
#include "backup_frm_test.moc"
