#include "support/imap_fault_site.h"
#include "frame/session.h"
#include "platform/settings.h"
#include "support/intake_site.h"
#include "support/read_store.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QThread>
#include <memory>

namespace {

constexpr const char *password = "apple tree";
constexpr int unsubscribes = 3; // with an entry; one of them to the account
constexpr int session_wait_ms = 20000;

struct pattern_parts {
    QByteArray store;
    QString unsubscribing_since;
};

// Made once a process.
const pattern_parts &imap_pattern()
{
    static const pattern_parts made = [] {
        intake_site site;
        site.add_account("orders", "orders@example.org");
        site.add_map("names", 1, "Order form", "Line", {{"full_name", "Line1", ":"}, {"city", "Line2", ":"}});
        site.enable_unsubscribing();
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

qsizetype lines_with(const QList<QByteArray> &lines, const QByteArray &one, const QByteArray &other)
{
    return std::count_if(lines.begin(), lines.end(), [&](const QByteArray &line) {
        return line.contains(one) && (other.isEmpty() || line.contains(other));
    });
}

}

QString order_body(int number)
{
    return QString("full_name: Customer %1\ncity: Rome\n").arg(number);
}

QString fault_user(int number)
{
    return QString("user%1").arg(number, 4, 10, QChar(u'0'));
}

QList<dovecot_user> fault_users(int count)
{
    QList<dovecot_user> users;
    for (int number = 0; number < count; ++number)
        users += dovecot_user{fault_user(number), password};
    return users;
}

imap_program::imap_program()
{
    write_file(path("mailapp.mdb"), imap_pattern().store);
    QDir().mkpath(path("config"));
}

timed_run imap_program::fetch(quint16 port, const QString &user, const QStringList &variables,
                              driver_rights rights) const
{
    const QString settings = QString("[main]\nenabledUnsubDate=%1\n\n[mail_client]\nkind=imap\nhost=127.0.0.1\n"
                                     "port=%2\nsecurity=none\nuser=%3\npassword=%4\nsend=keep\n")
                                 .arg(imap_pattern().unsubscribing_since, QString::number(port), user, password);
    write_file(path("config/brenmoorbiz.conf"), settings.toUtf8());
    QElapsedTimer taken;
    taken.start();
    timed_run done;
    done.run = run_driver_job("fetch", folder.path(), {"--timeout", QString::number(timeout_seconds)},
                              QStringList{"XDG_CONFIG_HOME=" + path("config")} + variables, rights);
    done.ms = taken.elapsed();
    return done;
}

QStringList imap_program::stored_bodies() const
{
    QStringList bodies = read_store(path("mailapp.mdb"), "select tsl_body from orders order by message_id");
    return bodies.replaceInStrings("\r\n", "\n");
}

QStringList imap_program::blocked() const
{
    return read_store(path("mailapp.mdb"), "select email from unsubscribe_tbl order by email");
}

QStringList imap_program::in_map() const
{
    return read_store(path("mailapp.mdb"), "select full_name from names order by message_id");
}

QString imap_program::store_damage() const
{
    const QString answer = read_store(path("mailapp.mdb"), "PRAGMA integrity_check").join(", ");
    return answer == "ok" ? QString() : answer;
}

QByteArray imap_program::log() const
{
    QFile file(path("errorlog.txt"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList imap_program::answered() const
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

imap_fault_site::imap_fault_site(dovecot_server &on, const QString &name, int wanted_orders)
    : user(name), server(on), orders(wanted_orders)
{
    fill();
}

void imap_fault_site::put(const simple_mail &mail)
{
    server.deliver(user, mail, next_delivery++);
    ++all_mails;
}

void imap_fault_site::fill()
{
    const int wanted = std::exchange(orders, 0);
    while (orders < wanted) {
        put_order(orders + 1);
        if (orders % 25 == 0)
            put({"private@example.org", "eva@example.net", "A letter", "Dear Ann\n"});
        if (orders == wanted / 4)
            put({"private@example.org", "ann@example.net", "Unsubscribe 1037", "Please.\n"});
        if (orders == wanted / 2)
            put({"orders@example.org", "bill@example.net", "Unsubscribe 1038", "No more.\n"});
    }
    --next_delivery;
    put_order(orders);
    --orders; // a duplicate
    put({"private@example.org", "cleo@example.net", "Unsubscribe 1039", "Please.\n"});
    put({"private@example.org", "eva@example.net", "Unsubscribe 9999", "Please.\n"});
}

void imap_fault_site::put_order(int number)
{
    put({"orders@example.org", "bob@example.net", number % 2 ? QString("Order form") : QString("Order %1").arg(number),
         order_body(number)});
    ++orders;
}

timed_run imap_fault_site::fetch(quint16 port, const QStringList &variables) const
{
    return imap_program::fetch(port, user, variables);
}

timed_run imap_fault_site::fetch_cleanly(driver_rights rights) const
{
    return imap_program::fetch(server.imap_port, user, {}, rights);
}

// Dovecot writes a line as a session begins and one as it hangs up. It writes them late, and may still be about the
// last command behind them: a mail that is being moved is seen twice.
QString imap_fault_site::wait_for_sessions() const
{
    const QByteArray begun = "imap-login: Info: Login: user=<" + user.toUtf8() + '>';
    const QByteArray ended = "imap(" + user.toUtf8() + ')';
    QElapsedTimer since;
    since.start();
    while (since.elapsed() < session_wait_ms) {
        const QList<QByteArray> lines = server.log().toUtf8().split('\n');
        if (lines_with(lines, begun, {}) == lines_with(lines, ended, "Disconnected") && what_is_missing().isEmpty())
            return {};
        QThread::msleep(10);
    }
    return "a session of " + user + " does not end, or: " + what_is_missing();
}

QStringList imap_fault_site::bodies_in(const QString &mail_folder) const
{
    const QString maildir = server.maildir(user, mail_folder);
    QStringList bodies;
    for (const QString &file : files_in(maildir))
        bodies += QString::fromUtf8(bytes_of_file(maildir + u'/' + file)).section("\n\n", 1);
    return bodies;
}

QStringList imap_fault_site::expected_bodies() const
{
    QStringList bodies{QString("No more.\n")};
    for (int number = 1; number <= orders; ++number)
        bodies += order_body(number);
    bodies.sort();
    return bodies;
}

QString imap_fault_site::what_is_missing() const
{
    if (in_inbox().size() + moved().size() != all_mails)
        return QString("%1 mails in the Inbox and %2 moved").arg(in_inbox().size()).arg(moved().size());
    const QStringList stored = stored_bodies();
    for (const QString &body : bodies_in("Tessaly_Inbox"))
        if (body != "Please.\n" && !stored.contains(body))
            return "left the Inbox without a row: " + body;
    return {};
}

QString imap_fault_site::what_is_wrong_after_fetch() const
{
    if (const QString missing = what_is_missing(); !missing.isEmpty())
        return missing;
    // An unsubscribe to nobody of ours may have been acted on before the fault: then it is not acted on again and
    // stays. The two unsubscribes without effect and the letters stay always.
    const qsizetype must_move = orders + 2, may_move = must_move + unsubscribes - 1;
    if (moved().size() < must_move || moved().size() > may_move)
        return QString("%1 mails moved").arg(moved().size());
    const QStringList left = bodies_in({});
    if (std::any_of(left.begin(), left.end(), [](const QString &body) { return body.contains("Customer"); }))
        return "an order is still in the Inbox";
    QStringList stored = stored_bodies();
    stored.sort();
    if (stored != expected_bodies())
        return "not each mail is stored once: " + difference(stored, expected_bodies());
    QStringList expected_in_map, found_in_map = in_map();
    found_in_map.removeDuplicates(); // a pass that was ended may repeat rows, but not lose one
    found_in_map.sort();
    for (int number = 1; number <= orders; number += 2)
        expected_in_map += QString("Customer %1").arg(number);
    expected_in_map.sort();
    if (found_in_map != expected_in_map)
        return "the map's table: " + found_in_map.join(", ");
    if (blocked() != QStringList{"ann@example.net", "bill@example.net", "cleo@example.net"})
        return "the block list: " + blocked().join(", ");
    return store_damage();
}

QString imap_fault_site::what_is_wrong_with_answers() const
{
    return answered() == blocked() ? QString() : "answers to " + answered().join(", ") + " for " + blocked().join(", ");
}
