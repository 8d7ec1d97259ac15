// Where the copy of the store goes.
#include "frame/back_up.h"
#include "frame/session.h"
#include "platform/ado.h"
#include "platform/settings.h"
#include "support/intake_site.h"
#include "support/scripted_dialogs.h"

#include <QDir>
#include <QFile>
#include <QtTest/QTest>

namespace {

QStringList accounts_in(const QString &store)
{
    ado::Connection copy;
    copy.Provider = "microsoft.jet.oledb.4.0";
    copy.ConnectionString = store;
    copy.Open();
    ado::Recordset rows;
    QStringList names;
    for (rows.Open("select query from email_tbl", copy); !rows.EOF_(); rows.MoveNext())
        names += rows[0].to_text();
    return names;
}

}

class back_up_test : public QObject {
    Q_OBJECT
private slots:
    void cleanup() { SaveSetting("main", "backup", QString()); }
    void the_configured_folder_takes_the_copy();
    void an_older_copy_there_is_replaced_without_a_question();
    void no_configured_folder_falls_back_to_the_dialog();
    void a_configured_folder_without_data_falls_back_to_the_dialog();
    void cancel_ends_without_a_copy();
    void an_existing_file_asks_and_no_opens_the_dialog_again();
    void what_was_written_just_before_is_in_the_copy();
    void a_copy_that_cannot_be_made_is_the_callers_failure();
};

void back_up_test::the_configured_folder_takes_the_copy()
{
    intake_site site;
    site.add_account("orders", "orders@example.org");
    QVERIFY(QDir().mkpath(site.folder.filePath("safe/data")));
    SaveSetting("main", "backup", site.folder.filePath("safe"));
    QCOMPARE(run_backup(), site.folder.filePath("safe/data/Tessaly.mdb"));
    QCOMPARE(accounts_in(site.folder.filePath("safe/data/Tessaly.mdb")), QStringList{"orders"});
    QCOMPARE(site.boxes.shown, QStringList());
    QCOMPARE(session.store_connection->State(), 1);
}

void back_up_test::an_older_copy_there_is_replaced_without_a_question()
{
    intake_site site;
    QVERIFY(QDir().mkpath(site.folder.filePath("safe/data")));
    SaveSetting("main", "backup", site.folder.filePath("safe"));
    run_backup();
    site.add_account("orders", "orders@example.org");
    run_backup();
    QCOMPARE(accounts_in(site.folder.filePath("safe/data/Tessaly.mdb")), QStringList{"orders"});
    QCOMPARE(site.boxes.shown, QStringList());
}

void back_up_test::no_configured_folder_falls_back_to_the_dialog()
{
    intake_site site;
    scripted_dialogs dialogs;
    site.add_account("orders", "orders@example.org");
    dialogs.choices = {site.folder.filePath("chosen.mdb")};
    QCOMPARE(run_backup(), site.folder.filePath("chosen.mdb"));
    QCOMPARE(dialogs.asked, QStringList{"Tessaly.mdb|*.mdb"});
    QCOMPARE(accounts_in(site.folder.filePath("chosen.mdb")), QStringList{"orders"});
}

void back_up_test::a_configured_folder_without_data_falls_back_to_the_dialog()
{
    intake_site site;
    scripted_dialogs dialogs;
    SaveSetting("main", "backup", site.folder.path());
    dialogs.choices = {std::nullopt};
    QCOMPARE(run_backup(), QString());
    QCOMPARE(dialogs.asked.size(), 1);
}

void back_up_test::cancel_ends_without_a_copy()
{
    intake_site site;
    scripted_dialogs dialogs;
    dialogs.choices = {std::nullopt};
    QCOMPARE(run_backup(), QString());
    QCOMPARE(site.boxes.shown, QStringList());
    QCOMPARE(QDir(site.folder.path()).entryList({"*.mdb"}), QStringList{"mailapp.mdb"});
}

void back_up_test::an_existing_file_asks_and_no_opens_the_dialog_again()
{
    intake_site site;
    scripted_dialogs dialogs;
    const QString old = site.folder.filePath("old.mdb");
    QFile file(old);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("former") == 6);
    file.close();
    dialogs.choices = {old, old};
    site.boxes.will_say_no();
    site.boxes.will_say_yes();
    QCOMPARE(run_backup(), old);
    QCOMPARE(site.boxes.shown, (QStringList{"File already exists! Overwrite?", "File already exists! Overwrite?"}));
    QVERIFY(site.boxes.boxes[0].kind == message_kind::yes_no);
    QCOMPARE(accounts_in(old), QStringList());
}

void back_up_test::what_was_written_just_before_is_in_the_copy()
{
    intake_site site;
    QVERIFY(QDir().mkpath(site.folder.filePath("safe/data")));
    SaveSetting("main", "backup", site.folder.filePath("safe"));
    site.run("insert into email_tbl(query,email,table_name) values('late','l@example.org','late')");
    run_backup();
    QCOMPARE(accounts_in(site.folder.filePath("safe/data/Tessaly.mdb")), QStringList{"late"});
}

void back_up_test::a_copy_that_cannot_be_made_is_the_callers_failure()
{
    intake_site site;
    scripted_dialogs dialogs;
    dialogs.choices = {site.folder.filePath("no/such/folder/x.mdb")};
    QVERIFY_EXCEPTION_THROWN(run_backup(), run_time_error);
}

QTEST_GUILESS_MAIN(back_up_test)
#include "back_up_test.moc"
