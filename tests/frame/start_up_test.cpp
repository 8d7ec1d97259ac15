// What the program does before a window exists.
#include "frame/messages.h"
#include "frame/session.h"
#include "frame/start_up.h"
#include "platform/app_folder.h"
#include "platform/outside_effects.h"
#include "platform/settings.h"
#include "support/driver.h"
#include "support/intake_site.h"

#include <QDir>
#include <QFile>
#include <QtTest/QTest>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace {

// Holds the folder's lock as another running program does.
class other_instance {
public:
    explicit other_instance(const QString &folder)
        : descriptor(
              ::open(QFile::encodeName(folder + "/tessaly.lock").constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0644))
    {
        if (descriptor < 0 || ::flock(descriptor, LOCK_EX | LOCK_NB) != 0)
            qFatal("cannot hold the lock");
    }
    ~other_instance() { ::close(descriptor); }
    other_instance(const other_instance &) = delete;
    other_instance &operator=(const other_instance &) = delete;

private:
    int descriptor;
};

}

class start_up_test : public QObject {
    Q_OBJECT
private slots:
    void a_second_start_shows_the_message_and_does_not_open_the_store();
    void a_store_that_says_not_installed_starts_the_setup();
    void a_store_without_an_install_row_starts_the_setup();
    void an_installed_store_starts_the_console();
    void a_moved_folder_is_kept_as_install_location();
    void the_same_folder_in_other_capitals_is_not_saved_again();
    void first_run_leaves_install_location_alone();
    void a_store_without_any_map_opens_the_wizard();
    void a_store_with_one_map_does_not();
    void a_failing_map_count_is_logged();
    void without_the_store_the_driver_shows_the_message_and_ends();
    void a_second_driver_shows_the_message_and_ends();
    void a_failed_start_of_the_driver_is_logged();
    void a_missing_maildir_ends_the_driver_with_one_line();
    void a_killed_holder_leaves_no_lock_behind();
};

void start_up_test::a_second_start_shows_the_message_and_does_not_open_the_store()
{
    intake_site site;
    session.store_connection->Close();
    const other_instance other(site.folder.path());
    QVERIFY(start_up() == start::another_instance);
    QCOMPARE(site.boxes.shown, QStringList{"Another instance of this program is already running"});
    QCOMPARE(session.store_connection->State(), 0);
}

void start_up_test::a_store_that_says_not_installed_starts_the_setup()
{
    intake_site site;
    site.run("update install_tbl set install=no");
    QVERIFY(start_up() == start::first_run);
    QCOMPARE(session.store_connection->State(), 1);
    QCOMPARE(session.shared_rs->State(), 0);
}

void start_up_test::a_store_without_an_install_row_starts_the_setup()
{
    intake_site site;
    site.run("delete from install_tbl");
    QVERIFY(start_up() == start::first_run);
}

void start_up_test::an_installed_store_starts_the_console()
{
    intake_site site;
    session.store_connection->Close();
    QVERIFY(start_up() == start::console);
    QCOMPARE(session.store_connection->State(), 1);
    QCOMPARE(session.shared_rs->State(), 0);
    QCOMPARE(site.boxes.shown, QStringList());
}

void start_up_test::a_moved_folder_is_kept_as_install_location()
{
    intake_site site;
    SaveSetting("main", "install_location", "/former/place");
    start_up();
    QCOMPARE(GetSetting("main", "install_location"), site.folder.path());
}

void start_up_test::the_same_folder_in_other_capitals_is_not_saved_again()
{
    intake_site site;
    SaveSetting("main", "install_location", site.folder.path().toUpper());
    start_up();
    QCOMPARE(GetSetting("main", "install_location"), site.folder.path().toUpper());
}

void start_up_test::first_run_leaves_install_location_alone()
{
    intake_site site;
    site.run("update install_tbl set install=no");
    SaveSetting("main", "install_location", "/former/place");
    start_up();
    QCOMPARE(GetSetting("main", "install_location"), QString("/former/place"));
}

void start_up_test::a_store_without_any_map_opens_the_wizard()
{
    intake_site site;
    QVERIFY(Load_Wizard());
    QCOMPARE(session.shared_rs->State(), 0);
}

void start_up_test::a_store_with_one_map_does_not()
{
    intake_site site;
    site.add_map("orders", 1, "Order", "Line", {});
    QVERIFY(!Load_Wizard());
    QCOMPARE(session.shared_rs->State(), 0);
}

void start_up_test::a_failing_map_count_is_logged()
{
    intake_site site;
    site.run("drop table table_list_tbl");
    QVERIFY(!Load_Wizard());
    QCOMPARE(session.err_form, QString("frmsplash.frm"));
    QCOMPARE(session.err_routine, QString("load wizard"));
    QCOMPARE(site.log_entries().size(), 1);
}

void start_up_test::without_the_store_the_driver_shows_the_message_and_ends()
{
    const QTemporaryDir empty;
    const driver_run run = run_driver(empty.path());
    QCOMPARE(run.status, 1);
    QCOMPARE(run.errors, QString("Required Database file missing. Please make sure the files exists\n"));
    QVERIFY(!QFile::exists(empty.filePath("mailapp.mdb")));
}

void start_up_test::a_second_driver_shows_the_message_and_ends()
{
    const QTemporaryDir empty; // no store in it: were it touched, the driver would say so
    const other_instance other(empty.path());
    const driver_run run = run_driver(empty.path());
    QCOMPARE(run.status, 1);
    QCOMPARE(run.errors, QString("Another instance of this program is already running\n"));
}

void start_up_test::a_failed_start_of_the_driver_is_logged()
{
    intake_site site;
    session.store_connection->Close();
    QFile store(site.folder.filePath("mailapp.mdb"));
    QVERIFY(store.open(QIODevice::WriteOnly));
    store.write(QByteArray(8192, 'x'));
    store.close();
    const driver_run run = run_driver(site.folder.path());
    QCOMPARE(run.status, 1);
    QVERIFY2(run.errors.startsWith("Unrecognized database format."), qPrintable(run.errors));
    QCOMPARE(run.errors.count(u'\n'), 1);
    const QStringList entries = site.log_entries();
    QCOMPARE(entries.size(), 1);
    QVERIFY2(entries[0].endsWith("|mail_module.bas|Main"), qPrintable(entries[0]));
}

void start_up_test::a_missing_maildir_ends_the_driver_with_one_line()
{
    intake_site site;
    before_outside_effect(); // what the driver opens is the file
    SaveSetting("mail_client", "maildir", "/no/such/Maildir");
    const driver_run run = run_driver(site.folder.path());
    QCOMPARE(run.status, 1);
    QCOMPARE(run.errors, QString("Form_load: Path not found: /no/such/Maildir\n"));
    QCOMPARE(site.log_entries(), QStringList{"76|Path not found: /no/such/Maildir|Mailfrm.frm|Form_load"});
}

void start_up_test::a_killed_holder_leaves_no_lock_behind()
{
    intake_site site;
    {
        const other_instance other(site.folder.path());
    }
    QVERIFY(QFile::exists(site.folder.filePath("tessaly.lock")));
    QVERIFY(start_up() == start::console);
}

QTEST_GUILESS_MAIN(start_up_test)
#include "start_up_test.moc"
