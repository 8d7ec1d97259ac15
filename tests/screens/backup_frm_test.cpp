// The screen of the back-up folder: what is refused, asked and kept. What a chosen folder holds already:
// backup_frm_former_test.cpp; the last step of the setup: backup_frm_setup_test.cpp.
#include "frame/session.h"
#include "platform/app_folder.h"
#include "platform/settings.h"
#include "screens/frame/menuFrm.h"
#include "screens/wizard_band.h"
#include "support/screens_folder_site.h"
#include "support/screens_program_end.h"
#include "support/scripted_dialogs.h"

#include <QAction>
#include <QLabel>

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
    void a_failure_is_told_and_logged();
    void browsing_tells_what_was_chosen();
    void browsing_without_a_choice_tells_so();
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
