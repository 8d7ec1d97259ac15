// A fetch that is killed at any point loses no mail, stores none twice, and leaves the store whole: the driver is
// killed before the n-th call that changes something on disk, and fetches once more.
// A few points unless TESSALY_LONG is set; the seed is printed, and TESSALY_SEED repeats a run.
#include "support/fault_site.h"
#include "support/kill_points.h"

#include <QtTest/QTest>
#include <csignal>

class fetch_kill_test : public QObject {
    Q_OBJECT
private slots:
    void an_undisturbed_fetch();
    void killed_before_a_store_write();
    void killed_before_a_rename();

private:
    void kill_at_points(const QString &calls);
};

void fetch_kill_test::an_undisturbed_fetch()
{
    const fault_site site;
    const driver_run run = site.fetch();
    QCOMPARE(run.errors, QString());
    QCOMPARE(run.status, 0);
    QCOMPARE(run.output, QString("130 of 135 mails processed\n"));
    QCOMPARE(site.what_is_wrong_after_fetch(), QString());
}

void fetch_kill_test::killed_before_a_store_write()
{
    kill_at_points("writes");
}

void fetch_kill_test::killed_before_a_rename()
{
    kill_at_points("renames");
}

void fetch_kill_test::kill_at_points(const QString &calls)
{
    const int all_calls = fault_site().calls_of_a_whole_fetch(calls);
    QVERIFY2(all_calls > 20, "the calls are not seen");
    for (const int point : points_in(all_calls, usual_points() / 2)) { // half of them before each kind of call
        const fault_site site;
        const QByteArray where = QString("killed before call %1 of the %2").arg(point).arg(calls).toUtf8();
        const driver_run killed = site.fetch_with(calls, {"KILL=" + QString::number(point)});
        QVERIFY2(killed.status == 128 + SIGKILL, where);
        QVERIFY2(site.what_is_missing().isEmpty(), where + ": " + site.what_is_missing().toUtf8());
        const driver_run again = site.fetch();
        QVERIFY2(again.status == 0, where + ": " + again.errors.toUtf8());
        QVERIFY2(site.what_is_wrong_after_fetch().isEmpty(), where + ": " + site.what_is_wrong_after_fetch().toUtf8());
        QVERIFY2(site.store_damage().isEmpty(), where + ": " + site.store_damage().toUtf8());
    }
}

QTEST_GUILESS_MAIN(fetch_kill_test)
#include "fetch_kill_test.moc"
