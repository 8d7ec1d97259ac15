#include "support/fault_program.h"
#include "frame/session.h"
#include "platform/settings.h"
#include "support/intake_site.h"
#include "support/read_store.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <cstring>

namespace {

struct pattern_parts {
    QByteArray store;
    QString unsubscribing_since;
};

// Made once a process. The keyword is in capitals: so it is found by both kinds of mail client.
const pattern_parts &pattern()
{
    static const pattern_parts made = [] {
        intake_site site;
        site.add_account("orders", "orders@example.org");
        site.add_map("names", 1, "Order form", "Line", {{"full_name", "Line1", ":"}, {"city", "Line2", ":"}});
        site.enable_unsubscribing();
        site.run("update unsub_detail set unsub_keyword='UNSUBSCRIBE'");
        site.run("insert into unsub_entryno (email,entryno) values('bill@example.net','1038')");
        site.run("insert into unsub_entryno (email,entryno) values('cleo@example.net','1039')");
        session.store_connection->Close();
        return pattern_parts{bytes_of_file(site.folder.filePath("mailapp.mdb")),
                             GetSetting("main", "enabledUnsubDate")};
    }();
    return made;
}

void write_file(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write %s", qPrintable(path));
}

QString difference(QStringList found, const QStringList &wanted)
{
    QStringList missing;
    for (const QString &one : wanted)
        if (!found.removeOne(one))
            missing += one;
    return "missing " + missing.join("; ") + ", too many " + found.join("; ");
}

QStringList expected_bodies(int orders)
{
    QStringList bodies{QString("No more.\n")};
    for (int number = 1; number <= orders; ++number)
        bodies += order_body(number);
    bodies.sort();
    return bodies;
}

QStringList expected_in_map(int orders)
{
    QStringList names;
    for (int number = 1; number <= orders; number += 2)
        names += QString("Customer %1").arg(number);
    names.sort();
    return names;
}

}

QString order_body(int number)
{
    return QString("full_name: Customer %1\ncity: Rome\n").arg(number);
}

fault_mail order_mail(int number, qint64 received)
{
    const QString subject = number % 2 ? QString("Order form") : QString("Order %1").arg(number);
    return {{"orders@example.org", "bob@example.net", subject, order_body(number)}, received};
}

QList<fault_mail> fault_mails(int orders)
{
    QList<fault_mail> mails;
    qint64 received = 1767268800;
    const auto add = [&](const simple_mail &mail) { mails += fault_mail{mail, received++}; };
    for (int number = 1; number <= orders; ++number) {
        add(order_mail(number, received).mail);
        if (number % 25 == 0)
            add({"private@example.org", "eva@example.net", "A letter", "Dear Ann\n"});
        if (number == orders / 4)
            add({"private@example.org", "ann@example.net", "Unsubscribe 1037", "Please.\n"});
        if (number == orders / 2)
            add({"orders@example.org", "bill@example.net", "Unsubscribe 1038", "No more.\n"});
    }
    --received; // a duplicate
    add(order_mail(orders, received).mail);
    add({"private@example.org", "cleo@example.net", "Unsubscribe 1039", "Please.\n"});
    add({"private@example.org", "eva@example.net", "Unsubscribe 9999", "Please.\n"});
    return mails;
}

fault_program::fault_program()
{
    write_file(path("mailapp.mdb"), pattern().store);
    QDir().mkpath(path("config"));
}

timed_run fault_program::fetch_as(const fault_login &login, const QStringList &variables, driver_rights rights) const
{
    return fetch_with(QString("kind=%1\nhost=127.0.0.1\nport=%2\nsecurity=%3\nauthority_file=%4\nuser=%5\npassword=%6")
                          .arg(login.kind, QString::number(login.port), login.security, login.authority, login.user,
                               fault_login::password()),
                      variables, rights);
}

timed_run fault_program::fetch_with(const QString &mail_client, const QStringList &variables,
                                    driver_rights rights) const
{
    const QString settings = QString("[main]\nenabledUnsubDate=%1\n\n[mail_client]\n%2\nsend=keep\n")
                                 .arg(pattern().unsubscribing_since, mail_client);
    write_file(path("config/brenmoorbiz.conf"), settings.toUtf8());
    QElapsedTimer taken;
    taken.start();
    timed_run done;
    done.run = run_driver_job("fetch", folder.path(), {"--timeout", QString::number(timeout_seconds)},
                              QStringList{"XDG_CONFIG_HOME=" + path("config")} + variables, rights);
    done.ms = taken.elapsed();
    return done;
}

QStringList fault_program::shim(const QString &calls, const QString &setting) const
{
    return {"LD_PRELOAD=" + qEnvironmentVariable("DISK_SHIM"), "DISK_SHIM_CALLS=" + calls,
            "DISK_SHIM_COUNT=" + path("count"), "ASAN_OPTIONS=verify_asan_link_order=0", "DISK_SHIM_" + setting};
}

int fault_program::calls_counted() const
{
    long count = 0;
    const QByteArray bytes = bytes_of_file(path("count"));
    if (bytes.size() == sizeof count)
        std::memcpy(&count, bytes.constData(), sizeof count);
    return int(count);
}

QStringList fault_program::stored_bodies() const
{
    QStringList bodies = read_store(path("mailapp.mdb"), "select tsl_body from orders order by message_id");
    return bodies.replaceInStrings("\r\n", "\n");
}

QStringList fault_program::blocked() const
{
    return read_store(path("mailapp.mdb"), "select email from unsubscribe_tbl order by email");
}

QStringList fault_program::in_map() const
{
    return read_store(path("mailapp.mdb"), "select full_name from names order by message_id");
}

QString fault_program::store_damage() const
{
    const QString answer = read_store(path("mailapp.mdb"), "PRAGMA integrity_check").join(", ");
    return answer == "ok" ? QString() : answer;
}

QByteArray fault_program::log() const
{
    QFile file(path("errorlog.txt"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList fault_program::answered() const
{
    QStringList found;
    const QDir outbox(path("outbox"));
    for (const QString &name : outbox.entryList({"*.eml"}, QDir::Files))
        for (const QByteArray &line : bytes_of_file(outbox.filePath(name)).split('\n'))
            if (line.startsWith("To: "))
                found += QString::fromUtf8(line.sliced(4).trimmed());
    found.sort();
    return found;
}

QString fault_program::what_is_wrong_in_store(int orders) const
{
    QStringList stored = stored_bodies();
    stored.sort();
    if (stored != expected_bodies(orders))
        return "not each mail is stored once: " + difference(stored, expected_bodies(orders));
    QStringList found_in_map = in_map();
    found_in_map.removeDuplicates(); // a pass that was ended may repeat rows, but not lose one
    found_in_map.sort();
    if (found_in_map != expected_in_map(orders))
        return "the map's table: " + found_in_map.join(", ");
    if (blocked() != QStringList{"ann@example.net", "bill@example.net", "cleo@example.net"})
        return "the block list: " + blocked().join(", ");
    return store_damage();
}

QString fault_program::what_is_wrong_with_answers() const
{
    return answered() == blocked() ? QString() : "answers to " + answered().join(", ") + " for " + blocked().join(", ");
}

// The block is safe before its answer is handed over: a kill between the two leaves one without an answer.
QString fault_program::what_a_kill_did_to_answers() const
{
    QStringList without = blocked();
    for (const QString &one : answered())
        if (!without.removeOne(one))
            return "answers to " + answered().join(", ") + " for " + blocked().join(", ");
    return without.size() <= 1 ? QString() : "no answer to " + without.join(", ");
}
