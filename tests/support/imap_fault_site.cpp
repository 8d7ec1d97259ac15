#include "support/imap_fault_site.h"

#include <QElapsedTimer>
#include <QThread>
#include <algorithm>

namespace {

constexpr int unsubscribes = 3; // with an entry; one of them to the account
constexpr int session_wait_ms = 20000;

qsizetype lines_with(const QList<QByteArray> &lines, const QByteArray &one, const QByteArray &other)
{
    return std::count_if(lines.begin(), lines.end(), [&](const QByteArray &line) {
        return line.contains(one) && (other.isEmpty() || line.contains(other));
    });
}

}

QString fault_user(int number)
{
    return QString("user%1").arg(number, 4, 10, QChar(u'0'));
}

QList<dovecot_user> fault_users(int count)
{
    QList<dovecot_user> users;
    for (int number = 0; number < count; ++number)
        users += dovecot_user{fault_user(number), fault_login::password()};
    return users;
}

timed_run imap_program::fetch(quint16 port, const QString &user, const QStringList &variables,
                              driver_rights rights) const
{
    return fetch_as({.kind = "imap", .port = port, .user = user}, variables, rights);
}

imap_fault_site::imap_fault_site(dovecot_server &on, const QString &name, int wanted_orders)
    : user(name), server(on), orders(wanted_orders)
{
    for (const fault_mail &each : fault_mails(orders))
        put(each);
}

void imap_fault_site::put(const fault_mail &each)
{
    server.deliver(user, each.mail, each.received);
    last_received = each.received;
    ++all_mails;
}

void imap_fault_site::put_order(int number)
{
    put(order_mail(number, last_received + 1));
    ++orders;
}

void imap_fault_site::secure(const QString &how, const QString &trusted)
{
    security = how;
    authority = trusted;
}

quint16 imap_fault_site::server_port() const
{
    return security == "tls" ? server.imaps_port : server.imap_port;
}

timed_run imap_fault_site::fetch(quint16 port, const QStringList &variables, driver_rights rights) const
{
    return fetch_as({"imap", port, user, security, authority}, variables, rights);
}

timed_run imap_fault_site::fetch_cleanly(driver_rights rights) const
{
    return fetch(server_port(), {}, rights);
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
    return what_is_wrong_in_store(orders);
}
