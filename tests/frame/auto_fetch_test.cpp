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
    void typed_minutes_data();
    void typed_minutes();
    void what_is_kept_as_off_is_off();
    void the_words_promise_only_what_a_tick_does();
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

void auto_fetch_test::typed_minutes_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("kept");
    QTest::addColumn<QString>("refusal");
    const QString no_number = "Minutes can only be numeric!", too_small = "Minutes should be greater than zero!";
    QTest::newRow("one") << "1" << 1 << "";
    QTest::newRow("any other whole number is kept as it is") << "45" << 45 << "";
    QTest::newRow("blanks around it do not matter") << "  5 " << 5 << "";
    QTest::newRow("thousands with a comma") << "1,440" << 1440 << "";
    QTest::newRow("the most that there is") << "32767" << 32767 << "";
    QTest::newRow("one more is none") << "32768" << 0 << no_number;
    QTest::newRow("beyond every number") << "1e999" << 0 << no_number;
    QTest::newRow("a letter behind the number") << "5x" << 0 << no_number;
    QTest::newRow("nothing") << "" << 0 << no_number;
    QTest::newRow("a word") << "nan" << 0 << no_number;
    QTest::newRow("a fraction") << "1.5" << 0 << no_number;
    QTest::newRow("a fraction below nought") << "-0.5" << 0 << no_number;
    QTest::newRow("nought") << "0" << 0 << too_small;
    QTest::newRow("below nought") << "-1" << 0 << too_small;
    QTest::newRow("far below nought") << "-40000" << 0 << too_small;
}

void auto_fetch_test::typed_minutes()
{
    QFETCH(QString, typed);
    const struct typed_minutes read = read_typed_minutes(typed);
    QTEST(read.refusal, "refusal");
    QTEST(read.minutes, "kept");
}

void auto_fetch_test::what_is_kept_as_off_is_off()
{
    const intake_site site;
    QVERIFY(!kept_minutes());
    keep_minutes(7);
    QCOMPARE(kept_minutes(), std::optional(7));
    keep_minutes(auto_fetch_off);
    QVERIFY(!kept_minutes());
    keep_minutes(0);
    QCOMPARE(kept_minutes(), std::optional(0));
}

void auto_fetch_test::the_words_promise_only_what_a_tick_does()
{
    QVERIFY(auto_fetch_words(1).contains("every ten seconds"));
    QVERIFY(auto_fetch_words(1).contains("not while the Mail Auditor is open")); // a loaded one is left as it is
    for (const std::optional<int> other : {std::optional<int>(), std::optional(0), std::optional(2)})
        QVERIFY(auto_fetch_words(other).contains("not fetched"));
}

QTEST_GUILESS_MAIN(auto_fetch_test)
#include "auto_fetch_test.moc"
