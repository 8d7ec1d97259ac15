#include "support/left_fault_site.h"

#include <QDateTime>
#include <QFile>
#include <QLocale>
#include <QTimeZone>

namespace {

QString written(qint64 seconds, const char *form)
{
    return QLocale::c().toString(QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC), QString::fromLatin1(form));
}

// Some have no date: their arrival is then the first sight, which a fault must not change.
bool has_date(qsizetype index, qsizetype count)
{
    return index % 10 != 5 || index + 10 > count;
}

}

left_fault_site::left_fault_site(dovecot_server &on, const QString &user, int wanted_orders)
    : server(&on), orders(wanted_orders)
{
    login.user = user;
    const QList<fault_mail> mails = fault_mails(orders);
    for (qsizetype index = 0; index < mails.size(); ++index) {
        fault_mail each = mails[index];
        if (has_date(index, mails.size()))
            each.mail.more = "Date: " + written(each.received, "ddd, d MMM yyyy HH:mm:ss") + " +0000\n";
        server->deliver(user, each.mail, each.received);
    }
}

left_fault_site::left_fault_site(int wanted_orders) : orders(wanted_orders)
{
    for (const fault_mail &each : fault_mails(orders))
        mbox_bytes += "From " + each.mail.from.toUtf8() + ' ' +
                      written(each.received, "ddd MMM dd HH:mm:ss yyyy").toUtf8() + '\n' + mail_bytes(each.mail) + '\n';
    QFile file(path("inbox"));
    if (!file.open(QIODevice::WriteOnly) || file.write(mbox_bytes) != mbox_bytes.size())
        qFatal("cannot write %s", qPrintable(file.fileName()));
}

void left_fault_site::secure(const QString &how, const QString &trusted)
{
    login.security = how;
    login.authority = trusted;
}

quint16 left_fault_site::server_port() const
{
    return login.security == "tls" ? server->pop3s_port : server->pop3_port;
}

timed_run left_fault_site::fetch(quint16 port, const QStringList &variables) const
{
    fault_login there = login;
    there.port = port;
    return fetch_as(there, variables);
}

timed_run left_fault_site::fetch_cleanly(const QStringList &variables) const
{
    return server ? fetch(server_port(), variables) : fetch_with("kind=mbox\nmbox=" + path("inbox"), variables);
}

QString left_fault_site::what_is_wrong_after_fetch() const
{
    if (server && files_in(server->maildir(login.user)).size() != fault_mails(orders).size())
        return "the server has other mails than before";
    if (!server && bytes_of_file(path("inbox")) != mbox_bytes)
        return "the mbox file was changed";
    return what_is_wrong_in_store(orders);
}

QString left_fault_site::what_is_doubled() const
{
    QStringList more = stored_bodies(), once = more;
    once.removeDuplicates();
    for (const QString &one : once)
        more.removeOne(one);
    return more.isEmpty() ? QString() : "stored more than once: " + more.join("; ");
}
