// Encrypted lines that are cut, reset, stalled or fed noise below TLS, which sees bytes that it never sent: no mail is
// lost and none stored twice. IMAP and POP3, by TLS from the first byte and by STARTTLS in turn. A few points unless
// TESSALY_LONG is set. Lines in plain text: imap_fault_test.cpp, pop3_fault_test.cpp.
#include "support/imap_fault_site.h"
#include "support/in_lanes.h"
#include "support/left_fault_site.h"
#include "support/seeded_faults.h"

#include <QTest>

namespace {

constexpr int orders = 60;

QString security_of(int number)
{
    return (number + number / 4) % 2 == 0 ? QString("tls") : QString("starttls"); // each kind of fault meets both
}

QString after_spoilt(const imap_fault_site &site)
{
    return site.wait_for_sessions();
}

QString after_spoilt(const left_fault_site &site)
{
    return site.what_is_doubled();
}

// "" when nothing is lost and nothing doubled. Both through the same port: what is remembered of a mailbox is so found
// again.
template <typename Site>
QString fetch_spoilt_then_cleanly(const Site &site, const wire_fault &fault)
{
    wire_proxy proxy(site.server_port(), {.faults = {fault}});
    if (const QString wrong = what_is_wrong_with_spoilt(site.fetch(proxy.port)); !wrong.isEmpty())
        return "with the fault: " + wrong;
    proxy.set({});
    if (const QString wrong = after_spoilt(site); !wrong.isEmpty())
        return "after the fault: " + wrong;
    const timed_run clean = site.fetch(proxy.port);
    if (clean.run.status != 0)
        return "the clean fetch: " + clean.run.errors;
    return after_spoilt(site) + site.what_is_wrong_after_fetch() + site.what_is_wrong_with_answers();
}

template <typename Site>
QStringList wrong_after_faults(dovecot_server &server, const QString &authority, int count)
{
    std::vector<std::unique_ptr<Site>> sites;
    for (int number = 0; number <= count; ++number) {
        sites.push_back(std::make_unique<Site>(server, fault_user(number), orders));
        sites.back()->secure(security_of(number), authority);
    }
    wire_proxy proxy(sites.back()->server_port());
    if (const timed_run undisturbed = sites.back()->fetch(proxy.port); undisturbed.run.status != 0)
        return {"undisturbed: " + undisturbed.run.errors};
    const wire_counts whole = proxy.counts();
    qInfo("%d points, %lld bytes to the client, %lld to the server, seed %u", count, whole.to_client, whole.to_server,
          fault_seed());
    const QList<wire_fault> faults = seeded_faults(count, whole);
    return in_lanes(count, [&](int number) {
        const QString found = fetch_spoilt_then_cleanly(*sites[size_t(number)], faults[number]);
        return found.isEmpty() ? QString() : security_of(number) + ", " + name_of(faults[number]) + ": " + found;
    });
}

}

class tls_fault_test : public QObject {
    Q_OBJECT
private slots:
    void faults_below_tls_data();
    void faults_below_tls();
};

void tls_fault_test::faults_below_tls_data()
{
    QTest::addColumn<bool>("is_imap");
    QTest::newRow("IMAP") << true;
    QTest::newRow("POP3") << false;
}

void tls_fault_test::faults_below_tls()
{
    QFETCH(bool, is_imap);
    const int count = is_long_run() ? 100 : 8;
    const certificates made;
    dovecot_options options;
    options.certificate = made.good();
    options.users = fault_users(count + 1);
    dovecot_server server(options);
    const QStringList wrong = is_imap ? wrong_after_faults<imap_fault_site>(server, made.authority(), count)
                                      : wrong_after_faults<left_fault_site>(server, made.authority(), count);
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join("\n\n")));
    const QStringList logins = server.log().split(u'\n').filter("Login: user=<");
    QVERIFY(logins.size() >= count);
    for (const QString &login : logins)
        QVERIFY2(login.contains(", TLS"), qPrintable(login));
}

QTEST_GUILESS_MAIN(tls_fault_test)
#include "tls_fault_test.moc"
