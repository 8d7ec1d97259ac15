// What one tick of the console's timer decides.
#include "frame/auto_fetch.h"
#include "frame/error_log.h"
#include "frame/session.h"
#include "support/intake_site.h"

#include <QtTest/QTest>

class auto_fetch_test : public QObject {
    Q_OBJECT
private slots:
    void a_tick_data();
    void a_tick();
    void every_tick_is_the_same();
    void a_closed_store_is_opened();
    void without_a_row_nothing_is_fetched();
    void a_number_beyond_16_bits_does_not_wrap_round_to_one();
};

void auto_fetch_test::a_tick_data()
{
    QTest::addColumn<int>("minutes");
    QTest::addColumn<bool>("fetches");
    QTest::newRow("minus one is off") << -1 << false;
    QTest::newRow("nought never fetches") << 0 << false;
    QTest::newRow("one fetches") << 1 << true;
    QTest::newRow("two never does") << 2 << false;
    QTest::newRow("thirty never does") << 30 << false;
}

void auto_fetch_test::a_tick()
{
    QFETCH(int, minutes);
    const intake_site site;
    site.run("update autofetch set minutes=" + QString::number(minutes));
    QTEST(auto_fetch_due(), "fetches");
    QCOMPARE(int(session.autofetch_minutes), minutes > 0 ? minutes : 0);
}

void auto_fetch_test::every_tick_is_the_same()
{
    const intake_site site;
    site.run("update autofetch set minutes=1");
    for (int tick = 0; tick < 5; ++tick)
        QVERIFY(auto_fetch_due());
    site.run("update autofetch set minutes=2");
    for (int tick = 0; tick < 5; ++tick)
        QVERIFY(!auto_fetch_due());
}

void auto_fetch_test::a_closed_store_is_opened()
{
    const intake_site site;
    site.run("update autofetch set minutes=1");
    session.store_connection->Close();
    QVERIFY(auto_fetch_due());
    QCOMPARE(session.store_connection->State(), 1);
}

void auto_fetch_test::without_a_row_nothing_is_fetched()
{
    const intake_site site;
    site.run("delete from autofetch");
    QVERIFY(!auto_fetch_due());
}

void auto_fetch_test::a_number_beyond_16_bits_does_not_wrap_round_to_one()
{
    const intake_site site;
    site.run("update autofetch set minutes=65537");
    bool due = false;
    QVERIFY(!guarded("menuFrm.frm", "Timer1", [&] { due = auto_fetch_due(); }));
    QVERIFY(!due);
    QCOMPARE(site.log_entries(), QStringList{"6|Overflow|menuFrm.frm|Timer1"});
}

QTEST_GUILESS_MAIN(auto_fetch_test)
#include "auto_fetch_test.moc"
