// A fetch from a POP3 mailbox or an mbox file that is killed at any point loses no mail, stores none twice, and leaves
// the store whole. A few points unless TESSALY_LONG is set. Faults of the line: pop3_fault_test.cpp.
#include "support/imap_fault_site.h"
#include "support/in_lanes.h"
#include "support/kill_points.h"
#include "support/left_fault_site.h"

#include <QTest>
#include <csignal>

namespace {

constexpr int orders = 60;

int points_of_each_kind()
{
    return usual_points() > 20 ? 100 : 10;
}

struct kill_point {
    QString calls;
    int at;
};

QString kill_then_fetch(const left_fault_site &site, const kill_point &one)
{
    const timed_run killed = site.fetch_cleanly(site.shim(one.calls, "KILL=" + QString::number(one.at)));
    if (killed.run.status != 128 + SIGKILL)
        return QString("was not killed but ended with %1").arg(killed.run.status);
    if (const QString doubled = site.what_is_doubled(); !doubled.isEmpty())
        return "after the kill: " + doubled;
    const timed_run again = site.fetch_cleanly();
    if (again.run.status != 0)
        return "the fetch after it: " + again.run.errors;
    return site.what_is_wrong_after_fetch() + site.what_a_kill_did_to_answers();
}

}

class mailbox_kill_test : public QObject {
    Q_OBJECT
private slots:
    void killed_anywhere_data();
    void killed_anywhere();

private:
    using made = std::unique_ptr<left_fault_site>;
    QList<kill_point> kills_of(const std::function<made()> &make);
};

void mailbox_kill_test::killed_anywhere_data()
{
    QTest::addColumn<bool>("is_pop3");
    QTest::newRow("pop3") << true;
    QTest::newRow("mbox") << false;
}

// One of four before a rename or its like, as far as there are so many; the others before a write.
QList<kill_point> mailbox_kill_test::kills_of(const std::function<made()> &make)
{
    QList<kill_point> kills;
    for (const QString &calls : {QString("renames"), QString("writes")}) {
        const made whole = make();
        const int all = whole->fetch_cleanly(whole->shim(calls, "KILL=0")).run.status == 0 ? whole->calls_counted() : 0;
        const int share = calls == "writes" ? points_of_each_kind() - int(kills.size()) : points_of_each_kind() / 4;
        for (const int point : points_in(all, qMin(all, share)))
            kills += kill_point{calls, point};
    }
    return kills;
}

void mailbox_kill_test::killed_anywhere()
{
    QFETCH(bool, is_pop3);
    dovecot_options options;
    options.users = fault_users(is_pop3 ? points_of_each_kind() + 2 : 1);
    dovecot_server server(options);
    int users = 0;
    const auto make = [&] {
        return is_pop3 ? std::make_unique<left_fault_site>(server, fault_user(users++), orders)
                       : std::make_unique<left_fault_site>(orders);
    };
    const QList<kill_point> kills = kills_of(make);
    QVERIFY2(kills.size() == points_of_each_kind(), "the calls are not seen");
    std::vector<made> sites;
    for (qsizetype number = 0; number < kills.size(); ++number)
        sites.push_back(make());
    const QStringList wrong = in_lanes(int(kills.size()), [&](int number) {
        const kill_point &one = kills[number];
        const QString found = kill_then_fetch(*sites[size_t(number)], one);
        return found.isEmpty() ? found
                               : QString("killed before call %1 of the %2: %3").arg(one.at).arg(one.calls, found);
    });
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join("\n\n")));
    qInfo("%lld kills", qlonglong(kills.size()));
}

QTEST_GUILESS_MAIN(mailbox_kill_test)
#include "mailbox_kill_test.moc"
