// A full disk and a store that cannot be written: a log entry or a status line, nothing half moved, and all is well
// again afterwards. A mail never leaves the Inbox when its row was given up.
#include "support/fault_site.h"
#include "support/maildir_files.h"

#include <QFile>
#include <QtTest/QTest>
#include <sys/stat.h>

namespace {

QByteArray bytes_or_none(const QString &path)
{
    return QFile::exists(path) ? bytes_of_file(path) : QByteArray();
}

}

class full_disk_test : public QObject {
    Q_OBJECT
private slots:
    void the_disk_is_full_from_a_write_on_data();
    void the_disk_is_full_from_a_write_on();
    void only_the_store_has_no_room();
    void neither_store_nor_log_has_room();
    void a_read_only_store();
};

void full_disk_test::the_disk_is_full_from_a_write_on_data()
{
    QTest::addColumn<int>("percent");
    QTest::newRow("from the first") << 0;
    QTest::newRow("a tenth on") << 10;
    QTest::newRow("a quarter on") << 25;
    QTest::newRow("half way") << 50;
    QTest::newRow("three quarters on") << 75;
    QTest::newRow("near the end") << 95;
}

void full_disk_test::the_disk_is_full_from_a_write_on()
{
    QFETCH(int, percent);
    const int calls = fault_site().calls_of_a_whole_fetch("writes");
    QVERIFY(calls > 20);
    const fault_site site;
    const driver_run full = site.fetch_with("writes", {"FULL=" + QString::number(1 + calls * percent / 100)});
    QVERIFY2(full.status == 1, full.errors.toUtf8());
    QVERIFY(!full.errors.isEmpty());
    QCOMPARE(site.what_is_missing(), QString());
    const driver_run again = site.fetch();
    QCOMPARE(again.errors, QString());
    QCOMPARE(site.what_is_wrong_after_fetch(), QString());
    QCOMPARE(site.store_damage(), QString());
}

void full_disk_test::only_the_store_has_no_room()
{
    const fault_site site;
    const driver_run full = site.fetch_with("writes", {"FULL=1", "ONLY=mailapp.mdb"});
    QCOMPARE(full.status, 1);
    QVERIFY(bytes_or_none(site.path("errorlog.txt")).contains("Mailfrm.frm"));
    QCOMPARE(files_in(site.path("mailbox/.Tessaly_Inbox")), QStringList());
    QCOMPARE(site.what_is_missing(), QString());
    QCOMPARE(site.fetch().status, 0);
    QCOMPARE(site.what_is_wrong_after_fetch(), QString());
}

void full_disk_test::neither_store_nor_log_has_room()
{
    const fault_site site;
    const driver_run full = site.fetch_with("writes", {"FULL=1", "ONLY=" + site.folder_path()});
    QCOMPARE(full.status, 1);
    QVERIFY2(full.errors.contains("The error log cannot be written"), full.errors.toUtf8());
    QCOMPARE(site.what_is_missing(), QString());
    QCOMPARE(site.fetch().status, 0);
    QCOMPARE(site.what_is_wrong_after_fetch(), QString());
}

void full_disk_test::a_read_only_store()
{
    const fault_site site;
    const QByteArray store = site.path("mailapp.mdb").toUtf8();
    const QByteArray before = bytes_of_file(site.path("mailapp.mdb"));
    QCOMPARE(::chmod(store.constData(), 0444), 0);
    const driver_run refused = site.fetch_bound_by_modes();
    QVERIFY2(refused.status == 1, refused.errors.toUtf8());
    QVERIFY(!refused.errors.isEmpty());
    QCOMPARE(files_in(site.path("mailbox/.Tessaly_Inbox")), QStringList());
    QCOMPARE(bytes_of_file(site.path("mailapp.mdb")), before);
    QCOMPARE(site.what_is_missing(), QString());
    QCOMPARE(::chmod(store.constData(), 0644), 0);
    QCOMPARE(site.fetch().status, 0);
    QCOMPARE(site.what_is_wrong_after_fetch(), QString());
}

QTEST_GUILESS_MAIN(full_disk_test)
#include "full_disk_test.moc"
