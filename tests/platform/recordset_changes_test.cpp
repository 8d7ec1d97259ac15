// Recordsets of many rows that change while they are visited: through them, beside them, and when a change is lost.
#include "support/many_rows.h"
#include "support/statement_effects.h"
#include <QFile>
#include <QTest>
#include <csignal>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using ado::cursor_type;
using ado::lock_type;

namespace {

constexpr int rows_on_disk = 600; // the others are written, but never committed

quint32 number_of_full_disk(const test_store &store, ado::Connection &to)
{
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit full{rlim_t(QFile(store.path()).size()), RLIM_INFINITY};
    setrlimit(RLIMIT_FSIZE, &full);
    return error_number_of([&] {
        for (int i = 0; i < 300; ++i) // more than what waits in memory
            to.Execute("insert into sales(tsl_body) values('" + QString(100000, 'x') + "')");
    });
}

// For a child process: the number of the look that failed.
int look_for_lost_rows(const test_store &store)
{
    ado::Connection mine;
    store.open(mine);
    mine.Execute("update orders set tsl_subject='changed' where message_id=1");
    for (int number = rows_on_disk + 1; number <= many_rows; ++number)
        mine.Execute("insert into orders(tsl_subject) values('" + padded(number) + "')");
    ado::Recordset fixed, live;
    fixed.Open("select tsl_subject from orders", mine);
    live.Open("select tsl_subject from orders", mine, cursor_type::keyset, lock_type::optimistic);
    if (fixed.RecordCount() != many_rows || live.RecordCount() != many_rows)
        return 1;
    if (first_text(fixed) != "changed" || first_text(live) != "changed")
        return 2;
    if (number_of_full_disk(store, mine) != ado::store_failure)
        return 3;
    const QStringList kept = forward(fixed);
    if (kept.size() != many_rows || kept[0] != "changed" || kept[rows_on_disk - 1] != padded(rows_on_disk))
        return 4;
    if (kept[many_rows - 600] != "-" || kept.last() != "-")
        return 5;
    live.MoveFirst();
    if (first_text(live) != padded(1))
        return 6;
    live.MoveLast();
    return error_number_of([&] { first_text(live); }) == ado::no_current_record ? 0 : 7;
}

}

class recordset_changes_test : public QObject {
    Q_OBJECT

private slots:
    void init() { store = empty_orders(); }
    void cleanup() { store.reset(); }

    void a_live_one_sees_what_is_written_between_two_moves();
    void rows_are_changed_and_deleted_as_they_are_visited();
    void two_on_one_table_see_each_other();
    void opened_again_it_finds_what_came_since();
    void a_change_that_was_lost_is_not_shown();
    void long_memos_data();
    void long_memos();

private:
    void open(ado::Recordset &rows, const QString &sql, bool live) { open_rows(rows, sql, *store, live); }
    std::unique_ptr<test_store> store;
};

void recordset_changes_test::a_live_one_sees_what_is_written_between_two_moves()
{
    fill_orders(*store);
    ado::Recordset rows;
    open(rows, "select tsl_subject,tsl_body from orders", true);
    QCOMPARE(rows.RecordCount(), many_rows);
    QCOMPARE(first_text(rows), padded(1));
    store->run("update orders set tsl_subject='changed' where message_id in (1,2)");
    QCOMPARE(first_text(rows), "changed");
    rows.MoveNext();
    QCOMPARE(first_text(rows), "changed");
    store->run("delete from orders where message_id in (2,3)");
    QCOMPARE(error_number_of([&] { first_text(rows); }), quint32(ado::no_current_record));
    rows.MoveNext();
    QCOMPARE(error_number_of([&] { first_text(rows); }), quint32(ado::no_current_record));
    QVERIFY(!rows.EOF_());
    rows.MoveNext();
    QCOMPARE(first_text(rows), padded(4));
    store->run("insert into orders(tsl_subject) values('new')");
    QCOMPARE(rows.RecordCount(), many_rows);
    rows.MoveLast();
    QCOMPARE(first_text(rows), padded(many_rows));
    rows.MoveNext();
    QVERIFY(rows.EOF_());
}

void recordset_changes_test::rows_are_changed_and_deleted_as_they_are_visited()
{
    fill_orders(*store);
    ado::Recordset rows;
    open(rows, "select tsl_subject,tsl_Status from orders", true);
    QStringList visited;
    for (; !rows.EOF_(); rows.MoveNext()) {
        visited += first_text(rows);
        if (rows[1].to_text() == "3")
            rows.Delete();
        else if (rows[1].to_text() == "4") {
            rows.Fields(0).set_value("was " + rows[0].to_text());
            rows.Update();
            QVERIFY(first_text(rows).startsWith("was "));
        }
    }
    QCOMPARE(visited, numbers_where([](int) { return true; }));
    QStringList left = numbers_where([](int number) { return number % 10 != 3; });
    for (QString &number : left)
        if (number.endsWith('4'))
            number.prepend("was ");
    QCOMPARE(forward(rows), left);
    QCOMPARE(backward(rows), reversed(left));
    QCOMPARE(rows.RecordCount(), left.size());
    QCOMPARE(rows_of(*store, "select tsl_subject from orders"), left.join('/'));
}

void recordset_changes_test::two_on_one_table_see_each_other()
{
    fill_orders(*store);
    ado::Recordset one, other, fixed;
    open(one, "select tsl_subject,tsl_body from orders", true);
    open(other, "select tsl_subject,tsl_body from orders", true);
    open(fixed, "select tsl_subject,tsl_body from orders", false);
    go_to(one, 700);
    go_to(other, 700);
    QCOMPARE(first_text(one), padded(700));
    other.Fields(0).set_value(QString("changed"));
    other.Update();
    QCOMPARE(first_text(one), "changed");
    one.MoveNext();
    one.Delete();
    other.MoveNext();
    QCOMPARE(error_number_of([&] { first_text(other); }), quint32(ado::no_current_record));
    other.AddNew();
    other.Fields(0).set_value(QString("added"));
    other.Update();
    QCOMPARE(other.RecordCount(), many_rows + 1);
    QCOMPARE(one.RecordCount(), many_rows - 1);
    one.MoveLast();
    QCOMPARE(first_text(one), padded(many_rows));
    QCOMPARE(forward(fixed), numbers_where([](int) { return true; }));
}

void recordset_changes_test::opened_again_it_finds_what_came_since()
{
    fill_orders(*store);
    ado::Recordset rows;
    for (const bool live : {false, true}) {
        open(rows, "select tsl_subject from orders where tsl_subject<>'gone'", live);
        const qint64 count = rows.RecordCount();
        go_to(rows, 600);
        store->run("update orders set tsl_subject='gone' where message_id=" + QString(live ? "1" : "2"));
        store->run("insert into orders(tsl_subject) values('new')");
        store->run("insert into orders(tsl_subject) values('new')");
        rows.Close();
        open(rows, "select tsl_subject from orders where tsl_subject<>'gone'", live);
        QCOMPARE(rows.RecordCount(), count + 1);
        QCOMPARE(forward(rows).mid(many_rows - (live ? 2 : 1)),
                 live ? QStringList({"new", "new", "new", "new"}) : QStringList({"new", "new"}));
        rows.Close();
    }
}

// What a full disk took back was never there: the rows that were not read yet are empty, a live one has none.
void recordset_changes_test::a_change_that_was_lost_is_not_shown()
{
    for (int number = 1; number <= rows_on_disk; ++number)
        store->run("insert into orders(tsl_subject) values('" + padded(number) + "')");
    store->connection().Close();
    const pid_t child = fork();
    if (child == 0)
        _exit(look_for_lost_rows(*store));
    int status = 0;
    waitpid(child, &status, 0);
    QVERIFY(WIFEXITED(status));
    QCOMPARE(WEXITSTATUS(status), 0);
}

void recordset_changes_test::long_memos_data()
{
    QTest::addColumn<bool>("live");
    QTest::newRow("fixed") << false;
    QTest::newRow("live") << true;
}

void recordset_changes_test::long_memos()
{
    QFETCH(bool, live);
    const auto memo = [](int number) {
        return number % 2 == 0 ? QString(3000000, QChar(u'a' + number))
                               : QString(3000000, QChar(u'é')) + padded(number);
    };
    constexpr int long_ones = 6;
    for (int number = 0; number < long_ones; ++number)
        store->run("insert into orders(tsl_subject,tsl_body) values('" + padded(number) + "','" + memo(number) + "')");
    fill_orders(*store);
    ado::Recordset rows;
    open(rows, "select tsl_subject,tsl_body from orders", live);
    QCOMPARE(rows.RecordCount(), many_rows + long_ones);
    for (int number = 0; number < long_ones; ++number, rows.MoveNext()) {
        QCOMPARE(first_text(rows), padded(number));
        QVERIFY(rows[1].to_text() == memo(number));
    }
    QCOMPARE(rows[1].to_text(), QString(200, 'x'));
    rows.MoveLast();
    QCOMPARE(first_text(rows), padded(many_rows));
    go_to(rows, long_ones + 1);
    for (int number = long_ones - 1; number >= 0; --number) {
        rows.MovePrevious();
        QCOMPARE(first_text(rows), padded(number));
        QVERIFY(rows[1].to_text() == memo(number));
    }
}

QTEST_GUILESS_MAIN(recordset_changes_test)
#include "recordset_changes_test.moc"
