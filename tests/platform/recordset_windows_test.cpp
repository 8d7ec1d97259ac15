// Recordsets of more rows than are held at once: every row comes in its place, and one that cannot be changed shows
// what was there when it was opened.
#include "platform/clock.h"
#include "support/many_rows.h"
#include "support/raw_store.h"
#include <QTest>
#include <algorithm>

class recordset_windows_test : public QObject {
    Q_OBJECT

private slots:
    void init() { store = empty_orders(); }
    void cleanup()
    {
        store.reset();
        set_clock({});
    }

    void every_row_comes_in_its_place_data();
    void every_row_comes_in_its_place();
    void rows_of_one_moment_come_once();
    void another_programs_rows_do_not_move_the_others();
    void a_fixed_one_keeps_what_it_did_not_read_yet();
    void rows_set_aside_keep_their_types();

private:
    void open(ado::Recordset &rows, const QString &sql, bool live) { open_rows(rows, sql, *store, live); }
    std::unique_ptr<test_store> store;
};

void recordset_windows_test::every_row_comes_in_its_place_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("behind");
    QTest::addColumn<QStringList>("expected");
    const auto all = [](int) { return true; };
    const QStringList every = numbers_where(all);
    QStringList by_sender = every;
    std::sort(by_sender.begin(), by_sender.end(),
              [](const QString &a, const QString &b) { return mixed(a.toInt()) < mixed(b.toInt()); });
    const auto nine_tenths = numbers_where([](int number) { return number % 10 != 3; });
    const auto every_second = numbers_where([](int number) { return number % 2 == 1; });
    const QString odd = "('1','3','5','7','9')";

    QTest::newRow("all") << ""
                         << "" << every;
    QTest::newRow("some are gone") << "delete from orders where tsl_Status='3'"
                                   << "" << nine_tenths;
    QTest::newRow("most are gone") << "delete from orders where tsl_Status<>'3'"
                                   << "" << numbers_where([](int number) { return number % 10 == 3; });
    QTest::newRow("all but some") << ""
                                  << " where tsl_Status<>'3'" << nine_tenths;
    QTest::newRow("every second") << ""
                                  << " where tsl_Status in " + odd << every_second;
    QTest::newRow("pieces") << ""
                            << " where tsl_Status in ('1','2','3')"
                            << numbers_where([](int number) { return number % 10 >= 1 && number % 10 <= 3; });
    QTest::newRow("one end") << ""
                             << " where message_id>1100" << numbers_where([](int number) { return number > 1100; });
    QTest::newRow("sorted") << ""
                            << " order by tsl_Email" << by_sender;
    QTest::newRow("sorted downwards") << ""
                                      << " order by tsl_Email desc" << reversed(by_sender);
    QTest::newRow("by key") << ""
                            << " order by message_id" << every;
    QTest::newRow("by key downwards") << ""
                                      << " order by message_id desc" << reversed(every);
    QTest::newRow("by key downwards, every second")
        << ""
        << " where tsl_Status in " + odd + " order by message_id desc" << reversed(every_second);
}

void recordset_windows_test::every_row_comes_in_its_place()
{
    QFETCH(QString, before);
    QFETCH(QString, behind);
    QFETCH(QStringList, expected);
    fill_orders(*store);
    if (!before.isEmpty())
        store->run(before);
    for (const char *columns : {"tsl_subject", "tsl_subject,tsl_body,message_id", "ucase(tsl_subject)"})
        for (const bool live : {false, true}) {
            ado::Recordset rows;
            open(rows, "select " + QString(columns) + " from orders" + behind, live);
            QCOMPARE(rows.RecordCount(), expected.size());
            QCOMPARE(forward(rows), expected);
            QCOMPARE(backward(rows), reversed(expected));
        }
}

// However often the clock is asked while they are read.
void recordset_windows_test::rows_of_one_moment_come_once()
{
    const QDateTime newest(QDate(2026, 8, 13), QTime(20, 0), Qt::UTC);
    for (int number = 1; number <= many_rows; ++number)
        store->run("insert into orders(tsl_subject,tsl_recdate) values('" + padded(number) + "','" +
                   newest.addSecs(-number).toString("M/d/yyyy h:mm:ss AP") + "')");
    int asked = 0;
    set_clock([&] { return newest.addSecs(-100 + 10 * asked++); });
    ado::Recordset rows;
    open(rows, "select tsl_subject from orders where tsl_recdate<now()", false);
    const QStringList found = forward(rows);
    QVERIFY(found.size() < many_rows && found.size() > many_rows - 200);
    QCOMPARE(found, numbers_where([&](int number) { return number > many_rows - found.size(); }));
    QCOMPARE(rows.RecordCount(), found.size());
}

void recordset_windows_test::another_programs_rows_do_not_move_the_others()
{
    fill_orders(*store);
    store->connection().barrier();
    ado::Recordset rows;
    open(rows, "select tsl_subject,tsl_body from orders where tsl_Status<>'3'", false);
    const raw_store other(store->path());
    other.run("delete from orders where message_id between 1001 and 1100");
    other.run("insert into orders(tsl_subject,tsl_Status) values('new','1')");
    other.run("update orders set tsl_Status='4' where message_id=1203");
    QStringList expected = numbers_where([](int number) { return number % 10 != 3; });
    for (QString &number : expected)
        if (number > padded(1000) && number <= padded(1100))
            number = "-";
    QCOMPARE(forward(rows), expected);
    QCOMPARE(rows.RecordCount(), expected.size());
    QCOMPARE(backward(rows), reversed(expected));
}

void recordset_windows_test::a_fixed_one_keeps_what_it_did_not_read_yet()
{
    fill_orders(*store);
    ado::Recordset rows, found, sorted;
    open(rows, "select tsl_subject,tsl_body from orders", false);
    open(found, "select tsl_subject,tsl_body from orders where tsl_Status='3'", false);
    open(sorted, "select tsl_subject,tsl_body from orders order by tsl_subject desc", false);
    rows.MoveNext();
    store->run("insert into orders(tsl_subject) values('new')");
    store->run("update orders set tsl_subject='changed',tsl_Status='4' where message_id>600");
    store->run("delete from orders where message_id>1200");
    const QStringList every = numbers_where([](int) { return true; });
    QCOMPARE(forward(rows), every);
    QCOMPARE(forward(found), numbers_where([](int number) { return number % 10 == 3; }));
    QCOMPARE(forward(sorted), reversed(every));
    QCOMPARE(store->cell("select count(*) from orders"), "1200");
}

void recordset_windows_test::rows_set_aside_keep_their_types()
{
    fill_orders(*store);
    const QString marked = QChar(0xFEFF) + QString(u"Straße\r\n\U0001F600"_qs);
    store->run("insert into orders(tsl_subject,tsl_recdate,tsl_Email,tsl_body,tsl_processed) values('','8/13/2026 "
               "1:02:03 PM',null,'" +
               marked + "',yes)");
    ado::Recordset rows;
    open(rows, "select * from orders", false);
    const auto look = [&] {
        rows.MoveLast();
        QCOMPARE(rows["message_id"], ado::Value(many_rows + 1));
        QCOMPARE(rows["tsl_subject"], ado::Value(u""));
        QVERIFY(rows["tsl_Email"].is_null());
        QCOMPARE(rows["tsl_recdate"], ado::Value(QDateTime(QDate(2026, 8, 13), QTime(13, 2, 3), Qt::UTC)));
        QCOMPARE(rows["tsl_body"], ado::Value(marked));
        QCOMPARE(rows["tsl_processed"], ado::Value(true));
    };
    look();
    rows.MoveFirst();
    store->run("delete from orders");
    look();
    rows.MovePrevious();
    QCOMPARE(rows["tsl_subject"].to_text(), padded(many_rows));
}

QTEST_GUILESS_MAIN(recordset_windows_test)
#include "recordset_windows_test.moc"
