// A line to the IMAP server that is cut, reset, stalled or fed noise at any byte loses no mail and stores none twice:
// a fetch through the fault, then one without. A few points unless TESSALY_LONG is set; the seed is printed, and
// TESSALY_SEED repeats a run. Killed fetches and a spoilt cache: imap_kill_test.cpp.
#include "support/imap_fault_site.h"
#include "support/in_lanes.h"
#include "support/seeded_faults.h"

#include <QRandomGenerator>
#include <QTest>

namespace {

constexpr int orders = 60; // their moves go in one range

// "" when nothing is lost and nothing doubled. Both through the same port: what is remembered of a mailbox is so found
// again.
QString fetch_spoilt_then_cleanly(const imap_fault_site &site, quint16 server_port, const QList<wire_fault> &faults)
{
    wire_proxy proxy(server_port, {.faults = faults});
    QString wrong = what_is_wrong_with_spoilt(site.fetch(proxy.port));
    proxy.set({});
    if (wrong.isEmpty())
        wrong = site.wait_for_sessions();
    if (!wrong.isEmpty())
        return "after the fault: " + wrong;
    if (site.log().contains("not in the folder any more"))
        return "a move that was done is told as a failure: " + QString::fromUtf8(site.log());
    const timed_run clean = site.fetch(proxy.port);
    if (clean.run.status != 0)
        return "the clean fetch: " + clean.run.errors;
    wrong = site.wait_for_sessions() + site.what_is_wrong_after_fetch();
    return wrong.isEmpty() ? site.what_is_wrong_with_answers() : wrong;
}

}

class imap_fault_test : public QObject {
    Q_OBJECT
private slots:
    void an_undisturbed_fetch();
    void faults_anywhere_on_the_line();
    void faults_in_the_answer_to_a_move();

private:
    void no_fault_harms(const QList<wire_fault> &faults, int mails);
};

void imap_fault_test::an_undisturbed_fetch()
{
    dovecot_options options;
    options.users = fault_users(1);
    dovecot_server server(options);
    const imap_fault_site site(server, fault_user(0), orders);
    const timed_run fetched = site.fetch_cleanly();
    QCOMPARE(fetched.run.errors, QString());
    QCOMPARE(fetched.run.status, 0);
    QCOMPARE(fetched.run.output, QString("61 of 67 mails processed\n"));
    QCOMPARE(site.what_is_wrong_after_fetch(), QString());
    QCOMPARE(site.what_is_wrong_with_answers(), QString());
    QCOMPARE(site.moved().size(), orders + 4);
}

void imap_fault_test::no_fault_harms(const QList<wire_fault> &faults, int mails)
{
    dovecot_options options;
    options.users = fault_users(int(faults.size()));
    dovecot_server server(options);
    std::vector<std::unique_ptr<imap_fault_site>> sites;
    for (int number = 0; number < faults.size(); ++number)
        sites.push_back(std::make_unique<imap_fault_site>(server, fault_user(number), mails));
    const QStringList wrong = in_lanes(int(faults.size()), [&](int number) {
        const QString found = fetch_spoilt_then_cleanly(*sites[size_t(number)], server.imap_port, {faults[number]});
        return found.isEmpty() ? QString() : name_of(faults[number]) + ": " + found;
    });
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join("\n\n")));
}

void imap_fault_test::faults_anywhere_on_the_line()
{
    dovecot_options options;
    options.users = fault_users(1);
    dovecot_server server(options);
    wire_proxy proxy(server.imap_port);
    const imap_fault_site site(server, fault_user(0), orders);
    QCOMPARE(site.fetch(proxy.port).run.status, 0);
    const wire_counts whole = proxy.counts();
    const int count = is_long_run() ? 200 : 20;
    qInfo("%d points, %lld bytes to the client, %lld to the server, seed %u", count, whole.to_client, whole.to_server,
          fault_seed());
    QVERIFY(whole.to_client > 4 * dialogue_bytes && whole.to_server > 200);
    no_fault_harms(seeded_faults(count, whole), orders);
}

// Not a multiple of 25: the duplicate must come in the second of its first.
// The answer begins where the last command of moving was said.
void imap_fault_test::faults_in_the_answer_to_a_move()
{
    const int mails = is_long_run() ? 690 : 120;
    dovecot_options options;
    options.users = fault_users(1);
    dovecot_server server(options);
    wire_proxy proxy(server.imap_port, {.record = true});
    const imap_fault_site site(server, fault_user(0), mails);
    QCOMPARE(site.fetch(proxy.port).run.status, 0);
    const qint64 from = proxy.recorded(wire::to_client).indexOf("[COPYUID"), to = proxy.counts().to_client;
    const qint64 said = proxy.recorded(wire::to_server).indexOf("UID MOVE");
    QVERIFY(from > 0 && said > 0);
    QList<wire_fault> faults;
    QRandomGenerator random(fault_seed());
    for (int number = 0; number < (is_long_run() ? 24 : 4); ++number) {
        wire_fault fault{.kind = wire_fault::kind_of(number % 4), .connection = number / 4 % 2 - 1};
        fault.direction = number / 4 % 3 == 2 ? wire::to_server : wire::to_client;
        const bool up = fault.direction == wire::to_server;
        fault.at_byte = up ? said + random.bounded(20) : from + random.bounded(to - from);
        faults += fault;
    }
    no_fault_harms(faults, mails);
}

QTEST_GUILESS_MAIN(imap_fault_test)
#include "imap_fault_test.moc"
