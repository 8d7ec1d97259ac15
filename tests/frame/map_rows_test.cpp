// Tidying a map table.
#include "frame/map_rows.h"
#include "platform/clock.h"
#include "platform/run_time_error.h"
#include "support/intake_site.h"

#include <QtTest/QTest>

class map_rows_test : public QObject {
    Q_OBJECT
private slots:
    void missing_texts_become_empty();
    void a_missing_date_becomes_now();
    void a_missing_or_empty_status_becomes_new();
    void what_is_there_stays();
    void an_unknown_table_is_the_callers_failure();
};

void map_rows_test::missing_texts_become_empty()
{
    intake_site site;
    site.add_map("orders", 1, "Order", "Line", {{"city", "Line1"}});
    site.run("insert into orders (tsl_status) values('done')");
    normalise_map_rows("orders");
    QCOMPARE(site.rows("select message_id,tsl_subject,tsl_Email,tsl_status,city from orders"),
             QStringList{"1|||done|"});
}

void map_rows_test::a_missing_date_becomes_now()
{
    intake_site site;
    site.add_map("orders", 1, "Order", "Line", {});
    site.run("insert into orders (tsl_subject) values('a')");
    set_clock([] { return QDateTime(QDate(2026, 8, 13), QTime(13, 2, 3), Qt::UTC); });
    normalise_map_rows("orders");
    set_clock({});
    QCOMPARE(site.column("select tsl_recdate from orders"), QStringList{"8/13/2026 1:02:03 PM"});
}

void map_rows_test::a_missing_or_empty_status_becomes_new()
{
    intake_site site;
    site.add_map("orders", 1, "Order", "Line", {});
    site.run("insert into orders (tsl_subject) values('a')");
    site.run("insert into orders (tsl_subject,tsl_status) values('b','')");
    site.run("insert into orders (tsl_subject,tsl_status) values('c','done')");
    normalise_map_rows("orders");
    QCOMPARE(site.column("select tsl_status from orders"), (QStringList{"new", "new", "done"}));
}

void map_rows_test::what_is_there_stays()
{
    intake_site site;
    site.add_map("orders", 1, "Order", "Line", {{"city", "Line1"}});
    const QString row = "insert into orders (tsl_subject,tsl_recdate,tsl_Email,tsl_status,city) values('Order',"
                        "'8/13/2026 1:02:03 PM','bob@example.net','new','Rome')";
    site.run(row);
    const QStringList before = site.rows("select * from orders");
    normalise_map_rows("orders");
    QCOMPARE(site.rows("select * from orders"), before);
    QCOMPARE(before, QStringList{"1|Order|8/13/2026 1:02:03 PM|bob@example.net|new|Rome"});
}

void map_rows_test::an_unknown_table_is_the_callers_failure()
{
    const intake_site site;
    QVERIFY_EXCEPTION_THROWN(normalise_map_rows("nowhere"), run_time_error);
}

QTEST_GUILESS_MAIN(map_rows_test)
#include "map_rows_test.moc"
