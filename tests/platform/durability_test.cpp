// What is on disk when: barriers, kills, copies, and disks that are full or may not be written.
#include "platform/outside_effects.h"
#include "support/kill_points.h"
#include "support/statement_effects.h"
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTest>
#include <QTimer>
#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

class durability_test : public QObject {
    Q_OBJECT

private slots:
    void nothing_is_written_before_a_barrier();
    void an_outside_effect_commits();
    void the_event_loop_commits_before_it_waits();
    void two_connections_share_what_is_pending();
    void a_killed_process_has_done_a_prefix_data();
    void a_killed_process_has_done_a_prefix();
    void a_failed_statement_undoes_itself_alone();
    void a_copy_holds_what_is_pending();
    void a_copy_that_cannot_be_made_changes_nothing();
    void a_full_disk_is_told_and_passes();
    void a_read_only_store_is_told_and_passes();
    void a_read_only_store_that_became_garbage_fails_clearly_until_it_is_back();
    void a_file_of_another_format_is_refused();
    void a_missing_file_is_refused();
    void nothing_is_left_beside_a_closed_store();
};

namespace {

constexpr uid_t nobody = 65534;
constexpr int writes = 400; // of the run that is killed

// Another process's view: what a connection of its own would see on disk.
QString seen_by_others(const QString &path, const QString &select)
{
    QTemporaryDir place;
    const QString copy = place.filePath("seen.mdb");
    QFile::copy(path, copy);
    if (QFile::exists(path + "-journal"))
        QFile::copy(path + "-journal", copy + "-journal");
    ado::Connection other;
    other.ConnectionString = copy;
    other.Open();
    ado::Recordset rows;
    rows.Open(select, other);
    return rows.EOF_() ? QString() : rows[0].text_or_empty();
}

// Closes it and makes it a file that this process cannot write once it is nobody's.
void give_away_read_only(test_store &store)
{
    store.connection().Close();
    chmod(qPrintable(store.folder()), 0777);
    chmod(qPrintable(store.path()), 0444);
    if (geteuid() != 0)
        return;
    if (chown(qPrintable(store.path()), nobody, nobody) != 0)
        qFatal("cannot give the store away");
    for (QString folder = store.folder(); folder.size() > 1; folder = folder.left(folder.lastIndexOf('/')))
        chmod(qPrintable(folder), 0777);
}

QByteArray bytes_of(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// The file itself stays, so whoever has it open sees the new bytes.
void replace_bytes(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write %s", qPrintable(path));
}

// Runs the work in a child process and gives its exit status, or minus the signal that ended it.
template <typename Work>
int in_child(Work work)
{
    const pid_t child = fork();
    if (child == 0)
        _exit(work());
    int status = 0;
    waitpid(child, &status, 0);
    return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
}

}

void durability_test::nothing_is_written_before_a_barrier()
{
    test_store store;
    store.connection().barrier();
    store.run("insert into unsubscribe_tbl(email) values('a')");
    QCOMPARE(seen_by_others(store.path(), "select count(*) from unsubscribe_tbl"), "0");
    store.connection().barrier();
    QCOMPARE(seen_by_others(store.path(), "select count(*) from unsubscribe_tbl"), "1");
}

void durability_test::an_outside_effect_commits()
{
    test_store store;
    store.run("insert into unsubscribe_tbl(email) values('a')");
    before_outside_effect();
    QCOMPARE(seen_by_others(store.path(), "select count(*) from unsubscribe_tbl"), "1");
}

void durability_test::the_event_loop_commits_before_it_waits()
{
    test_store store;
    store.connection().barrier();
    store.run("insert into unsubscribe_tbl(email) values('a')");
    QTimer::singleShot(20, qApp, &QCoreApplication::quit);
    qApp->exec();
    QCOMPARE(seen_by_others(store.path(), "select count(*) from unsubscribe_tbl"), "1");
}

void durability_test::two_connections_share_what_is_pending()
{
    test_store store;
    ado::Connection second;
    store.open(second);
    store.run("insert into unsubscribe_tbl(email) values('a')");
    second.Execute("insert into unsubscribe_tbl(email) values('b')");
    QCOMPARE(rows_of(store, "select email from unsubscribe_tbl"), "a/b");
    second.Close();
    QCOMPARE(second.State(), 0);
    QCOMPARE(error_number_of([&] { second.Execute("delete from sign"); }), quint32(ado::object_closed));
    QCOMPARE(rows_of(store, "select email from unsubscribe_tbl"), "a/b");
}

void durability_test::a_killed_process_has_done_a_prefix_data()
{
    QTest::addColumn<int>("kill_at");
    for (const int at : {0, 99, 100, writes - 1}) // the first, around a barrier, the last
        QTest::addRow("before write %d", at) << at;
    const QList<int> points = points_in(writes, usual_points());
    for (qsizetype i = 0; i < points.size(); ++i)
        QTest::addRow("point %d, before write %d", int(i) + 1, points[i] - 1) << points[i] - 1;
}

// Two rows a step, in two tables, a barrier every 50 steps: whatever survives is a beginning, and holds every barrier.
void durability_test::a_killed_process_has_done_a_prefix()
{
    QFETCH(int, kill_at);
    test_store store;
    fill_sample_store(store);
    store.run("delete from cust");
    store.connection().Close();
    const int ended = in_child([&] {
        ado::Connection mine;
        store.open(mine);
        for (int write = 0; write < writes; ++write) {
            if (write == kill_at)
                raise(SIGKILL);
            mine.Execute(write % 2 == 0 ? "insert into cust(city) values('c')"
                                        : "update cust set email='e' where message_id=(select max(message_id) from "
                                          "cust)");
            if (write % 100 == 99)
                mine.barrier();
        }
        return 0;
    });
    QCOMPARE(ended, -SIGKILL);
    ado::Connection after;
    store.open(after);
    ado::Recordset rows;
    rows.Open("select count(*) from cust", after);
    const qint64 kept = rows[0].to_number();
    QVERIFY2(kept >= kill_at / 100 * 50 && kept <= (kill_at + 1) / 2, qPrintable(QString::number(kept)));
    rows.Close();
    rows.Open("select count(*) from cust where email='e'", after);
    QVERIFY(rows[0].to_number() >= kept - 1);
    after.Execute("insert into cust(city) values('again')");
}

void durability_test::a_failed_statement_undoes_itself_alone()
{
    test_store store;
    fill_sample_store(store);
    store.run("update cust set city='Oslo' where message_id=1");
    store.run("update autocontent set autocontent='" + QString(300, 'x') + "'");
    QCOMPARE(error_number_of([&] { store.run("update autocontent set Subject=autocontent"); }),
             quint32(ado::value_too_long));
    store.run("update cust set city='Bergen' where message_id=2");
    store.connection().barrier();
    QCOMPARE(rows_of(store, "select city from cust"), "Oslo/Bergen/Rome");
    QCOMPARE(store.cell("select Subject from autocontent"), "S");
}

void durability_test::a_copy_holds_what_is_pending()
{
    test_store store;
    fill_sample_store(store);
    store.run("insert into cust(city) values('pending')");
    ado::Recordset open;
    open.Open("select * from cust", store.connection());
    const QString target = store.folder() + "/copy.mdb";
    store.connection().copy_store(target);
    store.run("delete from cust");
    ado::Connection copy;
    copy.ConnectionString = target;
    copy.Open();
    ado::Recordset rows;
    rows.Open("select city from cust where message_id=4", copy);
    QCOMPARE(rows[0].to_text(), "pending");
    QVERIFY(!QFile::exists(target + ".tmp"));
    QVERIFY(!QFile::exists(target + "-journal"));
}

void durability_test::a_copy_that_cannot_be_made_changes_nothing()
{
    test_store store;
    fill_sample_store(store);
    const quint32 failed = ado::store_failure;
    QCOMPARE(error_number_of([&] { store.connection().copy_store(store.folder() + "/no/copy.mdb"); }), failed);
    QCOMPARE(error_number_of([&] { store.connection().copy_store(store.path()); }), failed);
    QVERIFY(!QFile::exists(store.path() + ".tmp"));
    QCOMPARE(store.cell("select count(*) from cust"), "3");
}

void durability_test::a_full_disk_is_told_and_passes()
{
    test_store store;
    fill_sample_store(store);
    store.connection().Close();
    const int ended = in_child([&] {
        ado::Connection mine;
        store.open(mine);
        mine.Execute("insert into cust(city) values('before')");
        mine.barrier();
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit full{rlim_t(QFile(store.path()).size()), RLIM_INFINITY};
        setrlimit(RLIMIT_FSIZE, &full);
        const quint32 number = error_number_of([&] {
            for (int i = 0; i < 200; ++i)
                mine.Execute("insert into sales(tsl_body) values('" + QString(100000, 'x') + "')");
            mine.barrier();
        });
        if (number != ado::store_failure)
            return 1;
        const rlimit free{RLIM_INFINITY, RLIM_INFINITY};
        setrlimit(RLIMIT_FSIZE, &free);
        mine.Execute("insert into cust(city) values('after')");
        mine.Close();
        return 0;
    });
    QCOMPARE(ended, 0);
    ado::Connection after;
    store.open(after);
    ado::Recordset rows;
    rows.Open("select city from cust where message_id>3", after);
    QCOMPARE(rows[0].to_text(), "before");
    rows.MoveNext();
    QCOMPARE(rows[0].to_text(), "after");
}

void durability_test::a_read_only_store_is_told_and_passes()
{
    test_store store;
    fill_sample_store(store);
    give_away_read_only(store);
    const int ended = in_child([&] {
        if (geteuid() == 0 && setresuid(nobody, nobody, nobody) != 0)
            return 1;
        ado::Connection mine;
        store.open(mine);
        const auto insert = [&] { mine.Execute("insert into cust(city) values('x')"); };
        if (error_number_of(insert) != ado::store_failure)
            return 2;
        ado::Recordset rows;
        rows.Open("select count(*) from cust", mine);
        if (rows[0].to_number() != 3)
            return 3;
        chmod(qPrintable(store.path()), 0644);
        if (error_number_of(insert) != 0)
            return 4;
        mine.Close();
        return 0;
    });
    QCOMPARE(ended, 0);
    store.open(store.connection());
    QCOMPARE(store.cell("select city from cust where message_id=4"), "x");
}

// The first change after the file can be written again opens it anew; until that succeeds, every statement fails.
void durability_test::a_read_only_store_that_became_garbage_fails_clearly_until_it_is_back()
{
    test_store store;
    fill_sample_store(store);
    give_away_read_only(store);
    const int ended = in_child([&] {
        if (geteuid() == 0 && setresuid(nobody, nobody, nobody) != 0)
            return 1;
        ado::Connection mine;
        store.open(mine);
        ado::Recordset before, live;
        before.Open("select city from cust", mine);
        live.Open("select city from cust", mine, ado::cursor_type::keyset, ado::lock_type::optimistic);
        const auto insert = [&] { mine.Execute("insert into cust(city) values('x')"); };
        const QByteArray whole = bytes_of(store.path());
        chmod(qPrintable(store.path()), 0644);
        replace_bytes(store.path(), QByteArray(8192, 'x'));
        ado::Recordset rows;
        const auto select = [&] { rows.Open("select count(*) from cust", mine); };
        const auto count_live = [&] { live.RecordCount(); };
        const auto copy = [&] { mine.copy_store(store.folder() + "/copy.mdb"); };
        for (int attempt = 0; attempt < 2; ++attempt)
            if (error_number_of(insert) != ado::store_failure || error_number_of(select) != ado::store_failure ||
                error_number_of(count_live) != ado::store_failure || error_number_of(copy) != ado::store_failure)
                return 2;
        if (before["city"].to_text() != "Paris")
            return 3;
        replace_bytes(store.path(), whole);
        if (error_number_of(insert) != 0 || live.RecordCount() != 4)
            return 4;
        return 0;
    });
    QCOMPARE(ended, 0);
}

void durability_test::a_file_of_another_format_is_refused()
{
    QTemporaryDir folder;
    for (const QByteArray &start : {QByteArray("\0\1\0\0Standard Jet DB\0", 20),
                                    QByteArray("\0\1\0\0Standard ACE DB\0", 20), QByteArray("no store at all")}) {
        QFile file(folder.filePath("other.mdb"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(start + QByteArray(4096, 'x'));
        file.close();
        ado::Connection connection;
        connection.ConnectionString = file.fileName();
        QCOMPARE(error_number_of([&] { connection.Open(); }), quint32(ado::store_failure));
        QCOMPARE(connection.State(), 0);
    }
}

void durability_test::a_missing_file_is_refused()
{
    QTemporaryDir folder;
    ado::Connection connection;
    connection.ConnectionString = folder.filePath("none.mdb");
    QCOMPARE(error_number_of([&] { connection.Open(); }), quint32(ado::store_failure));
    QVERIFY(!QFile::exists(folder.filePath("none.mdb")));
}

void durability_test::nothing_is_left_beside_a_closed_store()
{
    test_store store;
    store.run("insert into unsubscribe_tbl(email) values('a')");
    store.connection().Close();
    QCOMPARE(QDir(store.folder()).entryList(QDir::Files), QStringList{"mailapp.mdb"});
}

QTEST_GUILESS_MAIN(durability_test)
#include "durability_test.moc"
