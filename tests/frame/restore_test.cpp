// Restore: what is asked and said in which order, what then stands where, and what is refused before anything is
// touched.
#include "frame/restore.h"
#include "frame/session.h"
#include "frame/start_up.h"
#include "frame/store.h"
#include "platform/clock.h"
#include "platform/outside_effects.h"
#include "platform/settings.h"
#include "support/intake_site.h"
#include "support/plain_files.h"
#include "support/raw_store.h"
#include "support/scripted_dialogs.h"
#include "support/store_spoiler.h"
#include "support/test_store.h"

#include <QDir>
#include <QFile>
#include <QtTest/QTest>

namespace {

const QString restored =
    "Database will be restored once you restart the application. Click here to close the application.";
const QString question = "Are you sure to restore this database?";

// The present store has the account "present", the file copy.mdb the account "former".
struct restore_site : intake_site {
    restore_site()
    {
        SaveSetting("main", "backup", QString());
        set_clock([] { return QDateTime(QDate(2026, 11, 21), QTime(15, 30, 12), Qt::UTC); });
        add_account("former", "former@example.org");
        session.store_connection->copy_store(copy);
        run("delete from email_tbl");
        add_account("present", "present@example.org");
        before_outside_effect();
        dialogs.choices = {copy};
    }
    ~restore_site() { set_clock({}); }
    QStringList names() const
    {
        return QDir(folder.path()).entryList(QDir::Files | QDir::Hidden | QDir::System, QDir::Name);
    }

    const QString store = folder.filePath("mailapp.mdb");
    const QString kept = folder.filePath("mailapp 2026-11-21 15-30-12.mdb");
    const QString copy = folder.filePath("copy.mdb");
    scripted_dialogs dialogs;
};

}

class restore_test : public QObject {
    Q_OBJECT
private slots:
    void the_proposal_is_the_last_back_up();
    void without_a_data_folder_the_proposal_is_a_bare_name_data();
    void without_a_data_folder_the_proposal_is_a_bare_name();
    void cancel_ends_it_without_a_word();
    void a_file_that_is_not_there_is_told_before_the_question();
    void no_changes_nothing();
    void yes_puts_the_file_in_the_stores_place();
    void the_present_store_is_kept_with_what_was_written_last();
    void a_second_restore_in_the_same_second_keeps_both();
    void the_connection_and_the_shared_recordsets_are_closed();
    void a_file_from_before_the_first_run_brings_the_setup_back();
    void side_files_of_the_present_store_do_not_meet_the_new_one();
    void what_another_program_left_unfinished_is_brought_to_its_end();
    void a_chosen_file_with_a_log_beside_it_is_whole();
    void a_copy_made_over_a_crashed_file_comes_back_with_its_own_rows();
    void a_journal_of_another_file_of_that_name_is_not_applied_data();
    void a_journal_of_another_file_of_that_name_is_not_applied();
    void a_log_beside_a_file_that_keeps_none_is_not_applied();
    void the_name_of_the_kept_store_is_told_beside();
    void what_a_broken_off_restore_left_is_refused_and_stays();
    void a_spoiled_file_is_refused_or_sound();
    void a_link_to_a_file_restores_the_file();
    void a_refused_file_is_told_and_nothing_is_touched_data();
    void a_refused_file_is_told_and_nothing_is_touched();
    void the_store_itself_is_refused();
    void a_failure_leaves_the_store_as_it_was();
};

void restore_test::the_proposal_is_the_last_back_up()
{
    restore_site site;
    QDir().mkpath(site.folder.filePath("safe/data"));
    SaveSetting("main", "backup", site.folder.filePath("safe"));
    site.dialogs.choices = {std::nullopt};
    QVERIFY(!restore_backup());
    QCOMPARE(site.dialogs.asked, QStringList{site.folder.filePath("safe/data/Tessaly.mdb|*.mdb|*.mdb")});
}

void restore_test::without_a_data_folder_the_proposal_is_a_bare_name_data()
{
    QTest::addColumn<QString>("setting");
    QTest::newRow("no setting") << "";
    QTest::newRow("a folder that is gone") << "/no/such/folder";
    QTest::newRow("a folder without data") << QDir::tempPath();
}

void restore_test::without_a_data_folder_the_proposal_is_a_bare_name()
{
    QFETCH(QString, setting);
    restore_site site;
    SaveSetting("main", "backup", setting);
    site.dialogs.choices = {std::nullopt};
    QVERIFY(!restore_backup());
    QCOMPARE(site.dialogs.asked, QStringList{"Tessaly.mdb|*.mdb|*.mdb"});
}

void restore_test::cancel_ends_it_without_a_word()
{
    restore_site site;
    const QByteArray before = bytes_in(site.store);
    site.dialogs.choices = {std::nullopt};
    QVERIFY(!restore_backup());
    QCOMPARE(site.boxes.shown, QStringList());
    QCOMPARE(bytes_in(site.store), before);
    QCOMPARE(session.store_connection->State(), 1);
}

void restore_test::a_file_that_is_not_there_is_told_before_the_question()
{
    restore_site site;
    site.dialogs.choices = {site.folder.filePath("nothing.mdb")};
    QVERIFY(!restore_backup());
    QCOMPARE(site.boxes.shown, QStringList{"File not found"});
}

void restore_test::no_changes_nothing()
{
    restore_site site;
    const QByteArray before = bytes_in(site.store);
    const QStringList names = site.names();
    site.boxes.will_say_no();
    QVERIFY(!restore_backup());
    QCOMPARE(site.boxes.shown, QStringList{question});
    QCOMPARE(site.boxes.boxes[0].title, QString("Confirm Restore"));
    QVERIFY(site.boxes.boxes[0].kind == message_kind::yes_no);
    QCOMPARE(bytes_in(site.store), before);
    QCOMPARE(site.names(), names);
}

void restore_test::yes_puts_the_file_in_the_stores_place()
{
    restore_site site;
    const QByteArray chosen = bytes_in(site.copy);
    const QFileDevice::Permissions modes = QFile::permissions(site.store);
    site.boxes.will_say_yes();
    QVERIFY(restore_backup());
    QCOMPARE(site.boxes.shown, (QStringList{question, restored}));
    QVERIFY(site.boxes.boxes[1].kind == message_kind::say);
    QCOMPARE(accounts_in(site.store), QString("former"));
    QCOMPARE(QFile::permissions(site.store), modes);
    QCOMPARE(bytes_in(site.copy), chosen);
    QStringList names = site.names();
    names.removeOne("tessaly.lock");
    QCOMPARE(names, (QStringList{"copy.mdb", "mailapp 2026-11-21 15-30-12.mdb", "mailapp.mdb"}));
}

void restore_test::the_present_store_is_kept_with_what_was_written_last()
{
    restore_site site;
    site.run("insert into email_tbl(query,email,table_name) values('late','l@example.org','late')");
    site.boxes.will_say_yes();
    QVERIFY(restore_backup());
    QCOMPARE(accounts_in(site.kept), QString("present late"));
    QCOMPARE(raw_store(site.kept).text("pragma integrity_check"), QString("ok"));
}

void restore_test::a_second_restore_in_the_same_second_keeps_both()
{
    restore_site site;
    site.boxes.will_say_yes();
    QVERIFY(restore_backup());
    open_store();
    site.run("update email_tbl set query='second'");
    site.dialogs.choices = {site.copy};
    site.boxes.will_say_yes();
    QVERIFY(restore_backup());
    QCOMPARE(accounts_in(site.kept), QString("present"));
    QCOMPARE(accounts_in(site.folder.filePath("mailapp 2026-11-21 15-30-12 (2).mdb")), QString("second"));
    QCOMPARE(accounts_in(site.store), QString("former"));
}

void restore_test::the_connection_and_the_shared_recordsets_are_closed()
{
    restore_site site;
    session.shared_rs->Open("select * from email_tbl", *session.store_connection);
    session.map_rs->Open("select * from autofetch", *session.store_connection, ado::cursor_type::keyset,
                         ado::lock_type::optimistic);
    site.boxes.will_say_yes();
    QVERIFY(restore_backup());
    QCOMPARE(session.store_connection->State(), 0);
    QCOMPARE(session.shared_rs->State(), 0);
    QCOMPARE(session.map_rs->State(), 0);
    open_store_if_closed(); // as the next routine does
    QCOMPARE(site.column("select query from email_tbl"), QStringList{"former"});
}

void restore_test::a_file_from_before_the_first_run_brings_the_setup_back()
{
    restore_site site;
    QVERIFY(start_up() == start::console);
    site.run("update install_tbl set install=no");
    const QString fresh = site.folder.filePath("fresh.mdb");
    session.store_connection->copy_store(fresh);
    site.run("update install_tbl set install=yes");
    site.dialogs.choices = {fresh};
    site.boxes.will_say_yes();
    QVERIFY(restore_backup());
    session = {};
    QVERIFY(start_up() == start::first_run);
}

void restore_test::side_files_of_the_present_store_do_not_meet_the_new_one()
{
    restore_site site;
    session.store_connection->Close(); // it would take its journal away itself
    for (const char *side : {"-journal", "-wal", "-shm"})
        put_file(site.store + side, "of the present store");
    site.boxes.will_say_yes();
    QVERIFY(restore_backup());
    for (const char *side : {"-journal", "-wal", "-shm"}) {
        QVERIFY(!QFile::exists(site.store + side));
        QCOMPARE(bytes_in(site.kept + side), QByteArray("of the present store"));
    }
    QCOMPARE(accounts_in(site.store), QString("former"));
}

void restore_test::what_another_program_left_unfinished_is_brought_to_its_end()
{
    restore_site site;
    const QString crashed = site.folder.filePath("crashed.mdb");
    leave_crashed(site.copy, crashed, half_done);
    const QByteArray chosen = bytes_in(crashed);
    QVERIFY(chosen.contains("after"));
    const QByteArray journal = bytes_in(crashed + "-journal");
    site.dialogs.choices = {crashed};
    site.boxes.will_say_yes();
    QVERIFY(restore_backup());
    QCOMPARE(accounts_in(site.store), QString("former"));
    QCOMPARE(raw_store(site.store).text("select count(*) from filler where t like 'before%'"), QString("3000"));
    QCOMPARE(bytes_in(crashed), chosen);
    QCOMPARE(bytes_in(crashed + "-journal"), journal);
    QVERIFY(!QFile::exists(site.store + "-journal"));
}

void restore_test::a_chosen_file_with_a_log_beside_it_is_whole()
{
    restore_site site;
    const QString logged = site.folder.filePath("logged.mdb");
    {
        const raw_store writing(site.copy);
        writing.run("pragma journal_mode=wal");
        writing.run("update email_tbl set query='in the log'");
        QVERIFY(QFile::copy(site.copy, logged));
        QVERIFY(QFile::copy(site.copy + "-wal", logged + "-wal"));
    }
    site.dialogs.choices = {logged};
    site.boxes.will_say_yes();
    QVERIFY(restore_backup());
    QVERIFY(!QFile::exists(site.store + "-wal"));
    QCOMPARE(accounts_in(site.store), QString("in the log"));
    QCOMPARE(raw_store(site.store).text("pragma journal_mode"), QString("delete"));
}

void restore_test::a_copy_made_over_a_crashed_file_comes_back_with_its_own_rows()
{
    restore_site site;
    const QString crashed = site.folder.filePath("crashed.mdb");
    leave_crashed(site.copy, crashed, half_done);
    session.store_connection->copy_store(crashed);
    site.run("update email_tbl set query='later'");
    site.dialogs.choices = {crashed};
    site.boxes.will_say_yes();
    QVERIFY(restore_backup());
    QCOMPARE(accounts_in(site.store), QString("present"));
    QCOMPARE(raw_store(site.store).text("select count(*) from sqlite_master where name='filler'"), QString("0"));
}

void restore_test::a_journal_of_another_file_of_that_name_is_not_applied_data()
{
    QTest::addColumn<QString>("change");
    QTest::newRow("the first page is not in the journal") << half_done;
    QTest::newRow("the first page is in the journal") << "create table more(t text); update filler set t='after' || t";
}

void restore_test::a_journal_of_another_file_of_that_name_is_not_applied()
{
    QFETCH(QString, change);
    restore_site site;
    const QString crashed = site.folder.filePath("crashed.mdb");
    leave_crashed(site.copy, crashed, qPrintable(change));
    const QString newer = site.folder.filePath("newer.mdb");
    for (int i = 0; i < 5; ++i) {
        site.run("update email_tbl set email='newer'");
        session.store_connection->barrier();
    }
    session.store_connection->copy_store(newer);
    const QByteArray bytes = bytes_in(newer);
    put_file(crashed, bytes); // as a user copies a file over another one
    site.dialogs.choices = {crashed};
    site.boxes.will_say_yes();
    QVERIFY(restore_backup());
    QCOMPARE(accounts_in(site.store), QString("present"));
    QCOMPARE(bytes_in(site.store), bytes);
}

void restore_test::a_log_beside_a_file_that_keeps_none_is_not_applied()
{
    restore_site site;
    const QString older = site.folder.filePath("older.mdb");
    {
        const raw_store writing(site.copy);
        writing.run("pragma journal_mode=wal");
        writing.run("update email_tbl set query='in the log'");
        QVERIFY(QFile::copy(site.copy + "-wal", older + "-wal"));
    }
    const QString newer = site.folder.filePath("newer.mdb");
    session.store_connection->copy_store(newer);
    QVERIFY(QFile::rename(newer, older));
    site.dialogs.choices = {older};
    site.boxes.will_say_yes();
    QVERIFY(restore_backup());
    QCOMPARE(accounts_in(site.store), QString("present"));
}

void restore_test::the_name_of_the_kept_store_is_told_beside()
{
    restore_site site;
    site.boxes.will_say_yes();
    QVERIFY(restore_backup());
    QCOMPARE(site.boxes.boxes[1].text, restored);
    QCOMPARE(site.boxes.boxes[1].beside, "Your previous data is kept in " + site.kept);
}

void restore_test::what_a_broken_off_restore_left_is_refused_and_stays()
{
    restore_site site;
    const QString left = site.store + ".new";
    QVERIFY(QFile::rename(site.copy, left));
    const QByteArray bytes = bytes_in(left);
    site.dialogs.choices = {left};
    site.boxes.will_say_yes();
    QVERIFY(!restore_backup());
    QCOMPARE(site.boxes.shown.last(), QString("This file cannot be restored: a restore that was broken off left it "
                                              "behind; give it another name first. Your data is as it was."));
    QCOMPARE(bytes_in(left), bytes);
}

// What was turned or copied in a place that no check looks at is restored as it is.
void restore_test::a_spoiled_file_is_refused_or_sound()
{
    restore_site site;
    for (int number = 0; number < 200; ++number)
        site.run("insert into email_tbl(query,email,table_name) values('" + QString(200, 'x') +
                 "','a@example.org','t')");
    session.store_connection->copy_store(site.copy);
    session.store_connection->Close();
    const QByteArray sound = bytes_in(site.copy);
    const QByteArray present = bytes_in(site.store);
    store_spoiler spoil{QRandomGenerator(20261121)};
    int refused = 0, accepted = 0;
    for (int round = 0; round < 30; ++round) {
        QByteArray bytes = sound;
        const QString told = spoil.spoil(bytes, round % 5);
        put_file(site.copy, bytes);
        site.dialogs.choices = {site.copy};
        site.boxes.will_say_yes();
        if (restore_backup()) {
            ++accepted;
            QVERIFY2(raw_store(site.store).text("pragma quick_check") == "ok", qPrintable(told));
            put_file(site.store, present);
        } else {
            ++refused;
            QVERIFY2(bytes_in(site.store) == present, qPrintable(told));
        }
        QVERIFY2(bytes_in(site.copy) == bytes, qPrintable(told));
        QVERIFY(!QFile::exists(site.store + ".new"));
    }
    QVERIFY2(refused > 10, qPrintable(QString("%1 refused, %2 accepted").arg(refused).arg(accepted)));
}

void restore_test::a_link_to_a_file_restores_the_file()
{
    restore_site site;
    const QString link = site.folder.filePath("link.mdb");
    QVERIFY(QFile::link(site.copy, link));
    site.dialogs.choices = {link};
    site.boxes.will_say_yes();
    QVERIFY(restore_backup());
    QVERIFY(!QFileInfo(site.store).isSymLink());
    QCOMPARE(accounts_in(site.store), QString("former"));
}

void restore_test::a_refused_file_is_told_and_nothing_is_touched_data()
{
    QTest::addColumn<QString>("spoil");
    QTest::addColumn<QString>("fault");
    QTest::newRow("a text") << "text"
                            << "it is no store of Tessaly";
    QTest::newRow("nothing in it") << "empty"
                                   << "it is no store of Tessaly";
    QTest::newRow("another program's SQLite file") << "foreign"
                                                   << "it is no store of Tessaly";
    QTest::newRow("a real database file of the dialect") << "jet"
                                                         << "it is a database file of another program's format";
    QTest::newRow("cut in the middle") << "cut"
                                       << "it is damaged";
    QTest::newRow("a page of zeros") << "zeroed"
                                     << "it is damaged";
    QTest::newRow("a fixed table is gone") << "table"
                                           << "the table sign is missing in it";
    QTest::newRow("a view of a fixed table's name") << "view"
                                                    << "it holds triggers or views, which no store of Tessaly has";
    QTest::newRow("a trigger") << "trigger"
                               << "it holds triggers or views, which no store of Tessaly has";
}

void restore_test::a_refused_file_is_told_and_nothing_is_touched()
{
    QFETCH(QString, spoil);
    QFETCH(QString, fault);
    restore_site site;
    QByteArray bytes = bytes_in(site.copy);
    if (spoil == "text")
        put_file(site.copy, QByteArray("Dear reader, ").repeated(1000));
    else if (spoil == "empty")
        put_file(site.copy, {});
    else if (spoil == "jet")
        put_file(site.copy, QByteArray("\0\1\0\0Standard Jet DB\0", 20) + QByteArray(4096, 0));
    else if (spoil == "cut")
        put_file(site.copy, bytes.left(bytes.size() / 2));
    else if (spoil == "zeroed")
        put_file(site.copy, bytes.replace(bytes.size() / 2 / 4096 * 4096, 4096, QByteArray(4096, 0)));
    else if (spoil == "foreign")
        raw_store(site.copy).run("pragma application_id=7");
    else if (spoil == "table")
        raw_store(site.copy).run("drop table sign");
    else if (spoil == "view")
        raw_store(site.copy).run("drop table sign; create view sign as select 1 as signtitle");
    else
        raw_store(site.copy).run("create trigger t after insert on email_tbl begin delete from sign; end");
    bytes = bytes_in(site.copy);
    const QByteArray before = bytes_in(site.store);
    const QStringList names = site.names();
    site.boxes.will_say_yes();
    QVERIFY(!restore_backup());
    QCOMPARE(site.boxes.shown,
             (QStringList{question, "This file cannot be restored: " + fault + ". Your data is as it was."}));
    QCOMPARE(bytes_in(site.store), before);
    QCOMPARE(bytes_in(site.copy), bytes);
    QCOMPARE(site.names(), names);
    QCOMPARE(session.store_connection->State(), 1);
    QCOMPARE(site.column("select query from email_tbl"), QStringList{"present"});
}

void restore_test::the_store_itself_is_refused()
{
    restore_site site;
    const QString link = site.folder.filePath("link.mdb");
    QVERIFY(QFile::link(site.store, link));
    site.dialogs.choices = {site.store, link};
    const QString refused = "This file cannot be restored: it is the store that is in use. Your data is as it was.";
    for (int i = 0; i < 2; ++i) {
        site.boxes.will_say_yes();
        QVERIFY(!restore_backup());
        QCOMPARE(site.boxes.shown.last(), refused);
    }
    QCOMPARE(site.column("select query from email_tbl"), QStringList{"present"});
}

void restore_test::a_failure_leaves_the_store_as_it_was()
{
    restore_site site;
    QVERIFY(QDir().mkpath(site.store + ".new/in/the/way"));
    const QByteArray before = bytes_in(site.store);
    site.boxes.will_say_yes();
    QCOMPARE(error_number_of([] { restore_backup(); }), 70u);
    QCOMPARE(site.boxes.shown, QStringList{question});
    QCOMPARE(bytes_in(site.store), before);
    QVERIFY(!QFile::exists(site.kept));
    open_store_if_closed();
    QCOMPARE(site.column("select query from email_tbl"), QStringList{"present"});
}

QTEST_GUILESS_MAIN(restore_test)
#include "restore_test.moc"
