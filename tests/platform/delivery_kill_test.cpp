// A delivery that is killed, finds the disk full or is failed by the server, as a job of its own: what the server
// recorded and what the Outbox says agree, at most one mail is in doubt, none is lost and none goes twice. A few points
// unless TESSALY_LONG is set; the seed is printed, and TESSALY_SEED repeats a run.
#include "platform/app_folder.h"
#include "support/delivery_site.h"
#include "support/kill_points.h"
#include "support/maildir_files.h"
#include "support/smtp_sink.h"
#include "support/test_store.h"
#include <QFile>
#include <QSet>
#include <QTest>
#include <csignal>
#include <cstring>

Q_DECLARE_METATYPE(smtp_fault)

namespace {

constexpr int all_mails = 200;

class killed_site : public delivery_site {
public:
    explicit killed_site(const smtp_sink &sink) : delivery_site(sink.port())
    {
        test_store store;
        store.connection().Close();
        if (!QFile::copy(store.path(), path("mailapp.mdb")))
            qFatal("there is no store");
        hand_over_many(all_mails);
    }
    QString patience = QStringLiteral("5"); // in seconds
    driver_run run(const QString &calls = {}, const QString &fault = {}) const
    {
        QStringList variables;
        if (!calls.isEmpty())
            variables = QStringList{"LD_PRELOAD=" + qEnvironmentVariable("DISK_SHIM"), "DISK_SHIM_CALLS=" + calls,
                                    "DISK_SHIM_COUNT=" + path("count"), "DISK_SHIM_ONLY=/outbox/",
                                    "ASAN_OPTIONS=verify_asan_link_order=0"};
        if (!fault.isEmpty())
            variables += "DISK_SHIM_" + fault;
        return run_driver_job("deliver", path(""), {"--timeout", patience}, variables);
    }
    int calls_of_a_whole_run(const QString &calls) const
    {
        long count = 0;
        const driver_run whole = run(calls);
        if (whole.status != 0)
            qFatal("a whole run fails: %s", qPrintable(whole.errors));
        const QByteArray bytes = bytes_of_file(path("count"));
        if (whole.status == 0 && bytes.size() == sizeof count)
            std::memcpy(&count, bytes.constData(), sizeof count);
        return int(count);
    }
};

// "" when each mail is where it ought to be: with the server, or waiting, or in doubt.
QString what_is_wrong(const delivery_site &site, const smtp_sink &sink, int most_in_doubt)
{
    site.begin_a_new_run();
    QStringList reached;
    for (const recorded_mail &mail : sink.mails())
        reached += QString::fromLatin1(mail.recipients.value(0));
    const QSet<QString> once(reached.begin(), reached.end());
    if (once.size() != reached.size())
        return "a mail went twice";
    QSet<QString> waiting, doubtful;
    for (const outbox::kept_mail &mail : outbox::contents())
        (mail.state == outbox::mail_state::waiting ? waiting : doubtful).insert(mail.To.value(0));
    if (waiting.intersects(once))
        return "a mail waits that went";
    if (doubtful.size() > most_in_doubt)
        return QString("%1 mails are in doubt").arg(doubtful.size());
    for (int number = 1; number <= all_mails; ++number) {
        const QString address = QString("%1@example.net").arg(number);
        if (!once.contains(address) && !waiting.contains(address) && !doubtful.contains(address))
            return address + " is lost";
    }
    return {};
}

}

class delivery_kill_test : public QObject {
    Q_OBJECT
private slots:
    void killed_before_a_call_data();
    void killed_before_a_call();
    void the_disk_is_full_from_a_write_on();
    void a_server_that_fails_the_job_data();
    void a_server_that_fails_the_job();
    void two_at_once();
};

void delivery_kill_test::killed_before_a_call_data()
{
    QTest::addColumn<QString>("calls");
    QTest::newRow("a write") << "writes";
    QTest::newRow("a taking away") << "renames";
}

void delivery_kill_test::killed_before_a_call()
{
    QFETCH(QString, calls);
    int all_calls = 0;
    {
        const smtp_sink sink;
        all_calls = killed_site(sink).calls_of_a_whole_run(calls);
    }
    QVERIFY2(all_calls > all_mails, "the calls are not seen");
    for (const int point : points_in(all_calls, usual_points() / 2)) {
        const smtp_sink sink;
        const killed_site site(sink);
        const QByteArray where = QString("killed before call %1 of the %2: ").arg(point).arg(calls).toUtf8();
        QVERIFY2(site.run(calls, "KILL=" + QString::number(point)).status == 128 + SIGKILL, where);
        const QString wrong = what_is_wrong(site, sink, 1);
        QVERIFY2(wrong.isEmpty(), where + wrong.toUtf8());
        const driver_run again = site.run();
        QVERIFY2(again.status == 0, where + again.errors.toUtf8());
        const QString wrong_again = what_is_wrong(site, sink, 1);
        QVERIFY2(wrong_again.isEmpty(), where + wrong_again.toUtf8());
        QCOMPARE(outbox::count().waiting, 0);
    }
}

void delivery_kill_test::the_disk_is_full_from_a_write_on()
{
    int all_calls = 0;
    {
        const smtp_sink sink;
        all_calls = killed_site(sink).calls_of_a_whole_run("writes");
    }
    for (const int percent : {0, 30, 60, 95}) {
        const smtp_sink sink;
        const killed_site site(sink);
        const driver_run full = site.run("writes", "FULL=" + QString::number(1 + all_calls * percent / 100));
        QCOMPARE(full.status, 1);
        QVERIFY2(full.errors.contains("Disk full"), full.errors.toUtf8());
        QCOMPARE(what_is_wrong(site, sink, 0), QString());
        QCOMPARE(site.run().status, 0);
        QCOMPARE(what_is_wrong(site, sink, 0), QString());
        QCOMPARE(sink.taken(), all_mails);
    }
}

// The eighth mail is stopped once; the server is well for all others.
void delivery_kill_test::a_server_that_fails_the_job_data()
{
    QTest::addColumn<smtp_fault>("fault");
    QTest::addColumn<int>("status");
    QTest::addColumn<int>("taken");
    QTest::addColumn<int>("in_doubt");
    const auto row = [](const char *name, smtp_fault fault, int status, int taken, int in_doubt) {
        fault.after_mails = 7;
        QTest::newRow(name) << fault << status << taken << in_doubt;
    };
    row("falls silent at MAIL: once more at once", {smtp_step::mail, smtp_fault::stall}, 0, all_mails, 0);
    row("falls silent behind the end: in doubt, and the rest waits", {smtp_step::final, smtp_fault::stall}, 1, 7, 1);
    row("leaves at MAIL: once more at once", {smtp_step::mail, smtp_fault::answer, "421 4.3.2 Must go"}, 0, all_mails,
        0);
    row("leaves at the end: once more at once", {smtp_step::final, smtp_fault::answer, "421 4.3.2 Must go"}, 0,
        all_mails, 0);
    row("wants it later at MAIL: the others go", {smtp_step::mail, smtp_fault::answer, "451 4.3.0 Later"}, 1,
        all_mails - 1, 0);
    row("wants it later at the end: the others go", {smtp_step::final, smtp_fault::answer, "451 4.3.0 Later"}, 1,
        all_mails - 1, 0);
}
void delivery_kill_test::a_server_that_fails_the_job()
{
    QFETCH(smtp_fault, fault);
    QFETCH(int, in_doubt);
    const smtp_sink sink({.faults = {fault}});
    killed_site site(sink);
    site.patience = QStringLiteral("1");
    const driver_run first = site.run();
    QTEST(first.status, "status");
    QTEST(sink.taken(), "taken");
    QCOMPARE(first.errors.isEmpty(), first.status == 0);
    QCOMPARE(what_is_wrong(site, sink, in_doubt), QString());
    QCOMPARE(outbox::count().unknown, in_doubt);
    QCOMPARE(outbox::count().waiting, all_mails - sink.taken() - in_doubt);
    QCOMPARE(site.run().status, 0);
    QCOMPARE(sink.taken(), all_mails - in_doubt);
    QCOMPARE(what_is_wrong(site, sink, in_doubt), QString());
}

// The lock of the program folder keeps a second one out.
void delivery_kill_test::two_at_once()
{
    const smtp_sink sink;
    const killed_site site(sink);
    QVERIFY(lock_app_folder());
    const driver_run second = site.run();
    unlock_app_folder();
    QCOMPARE(second.status, 1);
    QCOMPARE(sink.taken(), 0);
    QCOMPARE(outbox::count().waiting, all_mails);
}

QTEST_GUILESS_MAIN(delivery_kill_test)
#include "delivery_kill_test.moc"
