// A fetch that answers, killed before the n-th call that changes something on disk, and done once more. Before the
// first reply is handed over a kill leaves no trace: each mail gets one row and one reply, with n, n+1 and so on.
// Behind that the pass may repeat rows and replies, but loses none and skips no number.
// A few points unless TESSALY_LONG is set; the seed is printed, and TESSALY_SEED repeats a run.
#include "frame/session.h"
#include "intake/auto_reply.h"
#include "platform/app_folder.h"
#include "platform/outbox.h"
#include "platform/settings.h"
#include "support/driver.h"
#include "support/intake_site.h"
#include "support/kill_points.h"
#include "support/read_store.h"

#include <QDir>
#include <QFile>
#include <QtTest/QTest>
#include <csignal>
#include <cstring>

namespace {

const QStringList visitors{"ann@mail.example", "bob@mail.example", "zoe@mail.example"};
const QStringList wanted{"ann@mail.example|Order 7 ok", "bob@mail.example|Order 8 ok", "zoe@mail.example|Order 9 ok"};

// Made once: one account, one map, and a reply with the number 7.
const QByteArray &answering_store()
{
    static const QByteArray bytes = [] {
        intake_site site;
        site.add_account("orders", "orders@example.org");
        site.add_map("names", 1, "Order", "Line", {{"full_name", "Line1", ":"}});
        intake::auto_reply reply;
        reply.SubjectType = intake::support_token;
        reply.SubjectPrefix = "Order";
        reply.SubjectSuffix = "ok";
        reply.LastToken = "7";
        reply.autocontent = "Thank you.";
        reply.enable = true;
        intake::save_auto_reply("names", reply);
        session.store_connection->Close();
        return bytes_of_file(site.folder.filePath("mailapp.mdb"));
    }();
    return bytes;
}

class killed_site {
public:
    killed_site()
    {
        QFile store(path("mailapp.mdb"));
        if (!store.open(QIODevice::WriteOnly) || store.write(answering_store()) != answering_store().size())
            qFatal("no store");
        QDir().mkpath(path("mailbox"));
        for (const QString &visitor : visitors)
            deliver(path("mailbox"),
                    simple_mail{"orders@example.org", visitor, "Order", "full_name: " + visitor + "\ncity: Rome\n"},
                    next_delivery++);
    }
    driver_run fetch(const QStringList &variables = {}) const
    {
        SaveSetting("mail_client", "kind", "maildir");
        SaveSetting("mail_client", "maildir", path("mailbox"));
        return run_driver(folder.path(), variables);
    }
    driver_run fetch_with_shim(const QString &calls, const QString &setting) const
    {
        return fetch({"LD_PRELOAD=" + qEnvironmentVariable("DISK_SHIM"), "DISK_SHIM_CALLS=" + calls,
                      "DISK_SHIM_COUNT=" + path("count"), "ASAN_OPTIONS=verify_asan_link_order=0", setting});
    }
    int calls_counted() const
    {
        long count = 0;
        const QByteArray bytes = bytes_of_file(path("count"));
        if (bytes.size() == sizeof count)
            std::memcpy(&count, bytes.constData(), sizeof count);
        return int(count);
    }
    QStringList replies() const // "to|subject"
    {
        set_app_folder("/nowhere"); // what was known of the Outbox is not
        outbox::count();
        set_app_folder(folder.path());
        QStringList lines;
        for (const outbox::kept_mail &mail : outbox::contents())
            lines += mail.To.join(u',') + u'|' + mail.Subject;
        set_app_folder({});
        return lines;
    }
    QStringList rows() const
    {
        return read_store(path("mailapp.mdb"), "select full_name from names order by message_id");
    }
    QStringList unmarked() const
    {
        return read_store(path("mailapp.mdb"), "select message_id from orders where tsl_processed=0");
    }
    QString token() const { return read_store(path("mailapp.mdb"), "select LastToken from autocontent").value(0); }

private:
    QString path(const QString &name) const { return folder.filePath(name); }
    QTemporaryDir folder;
    qint64 next_delivery = 1767268800;
};

// After the fetch that heals. before: the replies that the kill left.
QString what_is_wrong(const killed_site &site, const QStringList &before)
{
    if (!site.unmarked().isEmpty())
        return "not marked: " + site.unmarked().join(", ");
    const QStringList replies = site.replies();
    if (before.isEmpty()) {
        if (replies != wanted)
            return "replies: " + replies.join(", ");
        if (site.rows() != visitors)
            return "rows: " + site.rows().join(", ");
        return site.token() == "10" ? QString() : "the token: " + site.token();
    }
    for (qsizetype number = 0; number < visitors.size(); ++number) {
        if (!site.rows().contains(visitors[number]))
            return "no row of " + visitors[number];
        if (replies.filter(visitors[number]).isEmpty())
            return "no reply to " + visitors[number];
    }
    for (int number = 7; number < site.token().toInt(); ++number)
        if (replies.filter(" " + QString::number(number) + " ").isEmpty())
            return QString("the number %1 was skipped").arg(number);
    return {};
}

}

class auto_reply_kill_test : public QObject {
    Q_OBJECT
private slots:
    void an_undisturbed_fetch_answers_each_once()
    {
        const killed_site site;
        QCOMPARE(site.fetch().output, "3 of 3 mails processed\n");
        QCOMPARE(what_is_wrong(site, {}), QString());
        QCOMPARE(site.fetch().output, "0 of 0 mails processed\n");
        QCOMPARE(what_is_wrong(site, {}), QString());
    }

    void killed_before_a_store_write() { kill_at_points("writes"); }
    void killed_before_a_rename() { kill_at_points("renames"); }

private:
    void kill_at_points(const QString &calls)
    {
        const killed_site counted;
        counted.fetch_with_shim(calls, "DISK_SHIM_KILL=0");
        QVERIFY2(counted.calls_counted() > 8, "the calls are not seen");
        int before_the_first = 0, behind_it = 0;
        for (const int point : points_in(counted.calls_counted(), qMin(counted.calls_counted(), usual_points()))) {
            const killed_site site;
            const QString where = QString("killed before call %1 of the %2: ").arg(point).arg(calls);
            QCOMPARE(site.fetch_with_shim(calls, "DISK_SHIM_KILL=" + QString::number(point)).status, 128 + SIGKILL);
            const QStringList before = site.replies();
            (before.isEmpty() ? before_the_first : behind_it) += 1;
            QVERIFY2(before.size() <= 3 && wanted.first(before.size()) == before,
                     qPrintable(where + before.join(", ")));
            QVERIFY2(!before.isEmpty() || site.rows().isEmpty(), qPrintable(where + "a row without its reply"));
            QCOMPARE(site.fetch().status, 0);
            const QString wrong = what_is_wrong(site, before);
            QVERIFY2(wrong.isEmpty(), qPrintable(where + wrong));
        }
        QVERIFY2(before_the_first > 2 && behind_it > 2, "points on both sides");
    }
};

QTEST_GUILESS_MAIN(auto_reply_kill_test)
#include "auto_reply_kill_test.moc"
