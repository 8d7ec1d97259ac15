// A fetch over IMAP that is killed at any point loses no mail, stores none twice, and leaves the store whole; and a
// spoilt cache of the mails costs time, not mails. Faults of the line: imap_fault_test.cpp.
#include "support/imap_fault_site.h"
#include "support/in_lanes.h"
#include "support/kill_points.h"

#include <QDir>
#include <QTest>
#include <csignal>

namespace {

constexpr int orders = 60;

int calls_of_a_whole_fetch(const imap_fault_site &site, quint16 port, const QString &calls)
{
    return site.fetch(port, site.shim(calls, "KILL=0")).run.status == 0 ? site.calls_counted() : 0;
}

QString kill_then_fetch(const imap_fault_site &site, quint16 port, const QString &calls, int point)
{
    const timed_run killed = site.fetch(port, site.shim(calls, "KILL=" + QString::number(point)));
    if (killed.run.status != 128 + SIGKILL)
        return QString("was not killed but ended with %1").arg(killed.run.status);
    if (const QString wrong = site.wait_for_sessions(); !wrong.isEmpty())
        return "after the kill: " + wrong;
    const timed_run again = site.fetch_cleanly();
    if (again.run.status != 0)
        return "the fetch after it: " + again.run.errors;
    return site.wait_for_sessions() + site.what_is_wrong_after_fetch() + site.what_a_kill_did_to_answers();
}

void write_file(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write %s", qPrintable(path));
}

// With what SQLite may have left beside it.
void remove_cache(const imap_program &site)
{
    for (const char *end : {"", "-wal", "-shm"})
        QFile::remove(site.path("mailcache.sqlite") + end);
}

void spoil_middle(const imap_program &site)
{
    QByteArray bytes = bytes_of_file(site.path("mailcache.sqlite"));
    for (qsizetype at = bytes.size() / 4; at < bytes.size() * 3 / 4; ++at)
        bytes[at] = char(at * 7);
    write_file(site.path("mailcache.sqlite"), bytes);
}

struct spoiling {
    const char *name;
    std::function<void(const imap_fault_site &, dovecot_server &)> deed;
};

const QList<spoiling> spoilings{
    {"damaged in its middle", [](const imap_fault_site &site, dovecot_server &) { spoil_middle(site); }},
    {"cut in half",
     [](const imap_fault_site &site, dovecot_server &) {
         const QByteArray bytes = bytes_of_file(site.path("mailcache.sqlite"));
         write_file(site.path("mailcache.sqlite"), bytes.left(bytes.size() / 2));
     }},
    {"all zeroes", [](const imap_fault_site &site,
                      dovecot_server &) { write_file(site.path("mailcache.sqlite"), QByteArray(20000, '\0')); }},
    {"empty", [](const imap_fault_site &site, dovecot_server &) { write_file(site.path("mailcache.sqlite"), {}); }},
    {"no database",
     [](const imap_fault_site &site, dovecot_server &) {
         write_file(site.path("mailcache.sqlite"), "This is a letter, not a cache.\n");
     }},
    {"deleted", [](const imap_fault_site &site, dovecot_server &) { remove_cache(site); }},
    {"that may not be written",
     [](const imap_fault_site &site, dovecot_server &) {
         QFile::setPermissions(site.path("mailcache.sqlite"), QFile::ReadOwner);
     }},
    {"with a folder in its place",
     [](const imap_fault_site &site, dovecot_server &) {
         remove_cache(site);
         QDir().mkpath(site.path("mailcache.sqlite/inside"));
     }},
    {"of a mailbox that was made anew since", [](const imap_fault_site &site, dovecot_server &server) {
         server.stop();
         for (const QString &name : QDir(server.maildir(site.user)).entryList({"dovecot*"}, QDir::Files))
             QFile::remove(server.maildir(site.user) + u'/' + name);
         server.start();
     }}};

}

Q_DECLARE_METATYPE(spoiling)

class imap_kill_test : public QObject {
    Q_OBJECT
private slots:
    void killed_anywhere();
    void a_cache_data();
    void a_cache();
    void a_cache_of_another_server();

private:
    dovecot_options users(int count)
    {
        dovecot_options options;
        options.users = fault_users(count);
        return options;
    }
};

// Three of four before a write, the others before a rename or its like.
void imap_kill_test::killed_anywhere()
{
    const int points = usual_points() > 20 ? 100 : 10;
    dovecot_server server(users(points + 2));
    struct kill {
        QString calls;
        int at;
    };
    QList<kill> kills;
    for (const QString &calls : {QString("writes"), QString("renames")}) {
        const bool is_writes = calls == "writes";
        const imap_fault_site whole(server, fault_user(points + is_writes), orders);
        const int all = calls_of_a_whole_fetch(whole, server.imap_port, calls);
        QVERIFY2(all > 5, "the calls are not seen");
        const int share = is_writes ? points - points / 4 : points / 4;
        for (const int point : points_in(all, qMin(all, share)))
            kills += kill{calls, point};
    }
    std::vector<std::unique_ptr<imap_fault_site>> sites;
    for (int number = 0; number < kills.size(); ++number)
        sites.push_back(std::make_unique<imap_fault_site>(server, fault_user(number), orders));
    const QStringList wrong = in_lanes(int(kills.size()), [&](int number) {
        const kill &one = kills[number];
        const QString found = kill_then_fetch(*sites[size_t(number)], server.imap_port, one.calls, one.at);
        return found.isEmpty() ? found
                               : QString("killed before call %1 of the %2: %3").arg(one.at).arg(one.calls, found);
    });
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join("\n\n")));
    qInfo("%lld kills", qlonglong(kills.size()));
}

void imap_kill_test::a_cache_data()
{
    QTest::addColumn<spoiling>("way");
    for (const spoiling &one : spoilings)
        QTest::newRow(one.name) << one;
}

void imap_kill_test::a_cache()
{
    QFETCH(spoiling, way);
    dovecot_server server(users(1));
    imap_fault_site site(server, fault_user(0), 8);
    QCOMPARE(site.fetch_cleanly().run.status, 0);
    QVERIFY(QFile::exists(site.path("mailcache.sqlite")));
    for (int number = 9; number <= 12; ++number)
        site.put_order(number);
    way.deed(site, server);
    const timed_run fetched = site.fetch_cleanly(driver_rights::bound_by_modes);
    QCOMPARE(fetched.run.errors, QString());
    QCOMPARE(fetched.run.status, 0);
    QCOMPARE(site.what_is_wrong_after_fetch(), QString());
    QCOMPARE(site.what_is_wrong_with_answers(), QString());
    QCOMPARE(site.log(), QByteArray());
    site.put_order(13);
    QCOMPARE(site.fetch_cleanly().run.status, 0);
    QCOMPARE(site.what_is_wrong_after_fetch(), QString());
}

// Its name of the account differs, and its numbers of the mails mean others.
void imap_kill_test::a_cache_of_another_server()
{
    dovecot_server server(users(2));
    const imap_fault_site other(server, fault_user(0), 30);
    imap_fault_site site(server, fault_user(1), 8);
    QCOMPARE(other.fetch_cleanly().run.status, 0);
    QVERIFY(QFile::copy(other.path("mailcache.sqlite"), site.path("mailcache.sqlite")));
    QCOMPARE(site.fetch_cleanly().run.errors, QString());
    QCOMPARE(site.what_is_wrong_after_fetch(), QString());
}

QTEST_GUILESS_MAIN(imap_kill_test)
#include "imap_kill_test.moc"
