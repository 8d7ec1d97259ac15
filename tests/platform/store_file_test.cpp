// A store's file takes the place of another one, or leaves everything as it was.
#include "platform/store_file.h"
#include "support/plain_files.h"
#include "support/test_store.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest/QTest>
#include <csignal>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

struct place {
    QTemporaryDir folder;
    QString path(const QString &name) const { return folder.filePath(name); }
    QStringList names() const { return QDir(folder.path()).entryList(QDir::Files, QDir::Name); }
};

}

class store_file_test : public QObject {
    Q_OBJECT
private slots:
    void the_first_bytes_tell_a_store_of_ours();
    void the_copy_becomes_the_store_and_the_store_is_kept();
    void a_kept_name_that_is_taken_leaves_all_as_it_was();
    void without_a_copy_all_stays_as_it_was();
    void a_missing_store_is_simply_followed();
    void a_full_disk_leaves_nothing_beside();
    void what_cannot_be_read_is_told();
    void a_copy_that_a_kill_left_is_replaced();
};

void store_file_test::the_first_bytes_tell_a_store_of_ours()
{
    test_store store;
    const place here;
    QVERIFY(store_file::is_of_ours(store.path()));
    put_file(here.path("text"), QByteArray(4096, 'x'));
    put_file(here.path("short"), "SQLite format 3");
    QVERIFY(!store_file::is_of_ours(here.path("text")));
    QVERIFY(!store_file::is_of_ours(here.path("short")));
    QVERIFY(!store_file::is_of_ours(here.path("nothing")));
    QVERIFY(!store_file::is_of_ours(here.folder.path()));
}

void store_file_test::the_copy_becomes_the_store_and_the_store_is_kept()
{
    const place here;
    put_file(here.path("a.mdb"), "present");
    put_file(here.path("a.mdb.new"), "chosen");
    put_file(here.path("a.mdb-journal"), "its journal");
    store_file::take_place(here.path("a.mdb"), here.path("kept.mdb"));
    QCOMPARE(bytes_in(here.path("a.mdb")), QByteArray("chosen"));
    QCOMPARE(bytes_in(here.path("kept.mdb")), QByteArray("present"));
    QCOMPARE(bytes_in(here.path("kept.mdb-journal")), QByteArray("its journal"));
    QCOMPARE(here.names(), (QStringList{"a.mdb", "kept.mdb", "kept.mdb-journal"}));
}

void store_file_test::a_kept_name_that_is_taken_leaves_all_as_it_was()
{
    const place here;
    put_file(here.path("a.mdb"), "present");
    put_file(here.path("a.mdb.new"), "chosen");
    put_file(here.path("kept.mdb"), "another");
    QCOMPARE(error_number_of([&] { store_file::take_place(here.path("a.mdb"), here.path("kept.mdb")); }), 58u);
    QCOMPARE(bytes_in(here.path("a.mdb")), QByteArray("present"));
    QCOMPARE(bytes_in(here.path("kept.mdb")), QByteArray("another"));
}

void store_file_test::without_a_copy_all_stays_as_it_was()
{
    const place here;
    put_file(here.path("a.mdb"), "present");
    put_file(here.path("a.mdb-wal"), "its log");
    QCOMPARE(error_number_of([&] { store_file::take_place(here.path("a.mdb"), here.path("kept.mdb")); }), 75u);
    QCOMPARE(here.names(), (QStringList{"a.mdb", "a.mdb-wal"}));
    // A side file that cannot be moved: all goes back.
    put_file(here.path("a.mdb.new"), "chosen");
    put_file(here.path("a.mdb-journal"), "its journal");
    QVERIFY(QDir().mkpath(here.path("kept.mdb-wal/in the way")));
    QCOMPARE(error_number_of([&] { store_file::take_place(here.path("a.mdb"), here.path("kept.mdb")); }), 75u);
    QCOMPARE(here.names(), (QStringList{"a.mdb", "a.mdb-journal", "a.mdb-wal", "a.mdb.new"}));
    QCOMPARE(bytes_in(here.path("a.mdb")), QByteArray("present"));
    QCOMPARE(bytes_in(here.path("a.mdb-journal")), QByteArray("its journal"));
}

void store_file_test::a_missing_store_is_simply_followed()
{
    const place here;
    put_file(here.path("a.mdb.new"), "chosen");
    store_file::take_place(here.path("a.mdb"), here.path("kept.mdb"));
    QCOMPARE(here.names(), QStringList{"a.mdb"});
}

void store_file_test::a_full_disk_leaves_nothing_beside()
{
    test_store chosen;
    const place here;
    put_file(here.path("a.mdb"), "present");
    chosen.connection().barrier();
    const pid_t child = fork();
    if (child == 0) {
        signal(SIGXFSZ, SIG_IGN);
        const rlimit little{50000, 50000};
        setrlimit(RLIMIT_FSIZE, &little);
        _exit(int(error_number_of([&] { store_file::lay_copy_beside(chosen.path(), here.path("a.mdb"), {}); })));
    }
    int status = 0;
    waitpid(child, &status, 0);
    QCOMPARE(WEXITSTATUS(status), 61);
    QCOMPARE(here.names(), QStringList{"a.mdb"});
}

void store_file_test::what_cannot_be_read_is_told()
{
    const place here;
    put_file(here.path("a.mdb"), "present");
    QCOMPARE(error_number_of([&] { store_file::lay_copy_beside(here.path("no.mdb"), here.path("a.mdb"), {}); }), 53u);
    QCOMPARE(store_file::lay_copy_beside(here.folder.path(), here.path("a.mdb"), {}),
             QString("it is no store of Tessaly"));
    QCOMPARE(here.names(), QStringList{"a.mdb"});
}

void store_file_test::a_copy_that_a_kill_left_is_replaced()
{
    test_store chosen;
    const place here;
    put_file(here.path("a.mdb"), "present");
    put_file(here.path("a.mdb.new"), QByteArray(1000000, 'x'));
    put_file(here.path("a.mdb.new-journal"), "of the killed one");
    chosen.connection().barrier();
    QCOMPARE(store_file::lay_copy_beside(chosen.path(), here.path("a.mdb"), {"install_tbl"}), QString());
    QCOMPARE(here.names(), (QStringList{"a.mdb", "a.mdb.new"}));
    QVERIFY(store_file::is_of_ours(here.path("a.mdb.new")));
    store_file::drop_copy_beside(here.path("a.mdb"));
    QCOMPARE(here.names(), QStringList{"a.mdb"});
}

QTEST_GUILESS_MAIN(store_file_test)
#include "store_file_test.moc"
