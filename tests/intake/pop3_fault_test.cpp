// A line to the POP3 server that is cut, reset, stalled or fed noise at any byte loses no mail and stores none twice: a
// fetch through the fault, then one without. A few points unless TESSALY_LONG is set. Below TLS: tls_fault_test.cpp.
#include "support/imap_fault_site.h"
#include "support/in_lanes.h"
#include "support/left_fault_site.h"
#include "support/seeded_faults.h"

#include <QTest>

namespace {

constexpr int orders = 60;

// "" when nothing is lost and nothing doubled. Both through the same port: what is remembered of a mailbox is so found
// again.
QString fetch_spoilt_then_cleanly(const left_fault_site &site, const wire_fault &fault)
{
    wire_proxy proxy(site.server_port(), {.faults = {fault}});
    const QString wrong = what_is_wrong_with_spoilt(site.fetch(proxy.port)) + site.what_is_doubled();
    if (!wrong.isEmpty())
        return "after the fault: " + wrong;
    proxy.set({});
    const timed_run clean = site.fetch(proxy.port);
    if (clean.run.status != 0)
        return "the clean fetch: " + clean.run.errors;
    return site.what_is_wrong_after_fetch() + site.what_is_wrong_with_answers();
}

}

class pop3_fault_test : public QObject {
    Q_OBJECT
private slots:
    void an_undisturbed_fetch();
    void faults_anywhere_on_the_line();
};

void pop3_fault_test::an_undisturbed_fetch()
{
    dovecot_options options;
    options.users = fault_users(1);
    dovecot_server server(options);
    const left_fault_site site(server, fault_user(0), orders);
    for (const char *summary : {"61 of 67 mails processed\n", "0 of 67 mails processed\n"}) {
        const timed_run fetched = site.fetch_cleanly();
        QCOMPARE(fetched.run.errors, QString());
        QCOMPARE(fetched.run.status, 0);
        QCOMPARE(fetched.run.output, QString(summary));
        QCOMPARE(site.what_is_wrong_after_fetch(), QString());
        QCOMPARE(site.what_is_wrong_with_answers(), QString());
        QCOMPARE(site.log(), QByteArray());
    }
}

void pop3_fault_test::faults_anywhere_on_the_line()
{
    const int count = is_long_run() ? 200 : 20;
    dovecot_options options;
    options.users = fault_users(count + 1);
    dovecot_server server(options);
    wire_proxy proxy(server.pop3_port);
    QCOMPARE(left_fault_site(server, fault_user(count), orders).fetch(proxy.port).run.status, 0);
    const wire_counts whole = proxy.counts();
    qInfo("%d points, %lld bytes to the client, %lld to the server, seed %u", count, whole.to_client, whole.to_server,
          fault_seed());
    QVERIFY(whole.to_client > 4 * dialogue_bytes && whole.to_server > 200);
    const QList<wire_fault> faults = seeded_faults(count, whole);
    std::vector<std::unique_ptr<left_fault_site>> sites;
    for (int number = 0; number < count; ++number)
        sites.push_back(std::make_unique<left_fault_site>(server, fault_user(number), orders));
    const QStringList wrong = in_lanes(count, [&](int number) {
        const QString found = fetch_spoilt_then_cleanly(*sites[size_t(number)], faults[number]);
        return found.isEmpty() ? QString() : name_of(faults[number]) + ": " + found;
    });
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join("\n\n")));
}

QTEST_GUILESS_MAIN(pop3_fault_test)
#include "pop3_fault_test.moc"
