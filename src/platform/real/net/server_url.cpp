#include "platform/real/net/server_url.h"
#include <QUrl>
#include <algorithm>
#include <cctype>

namespace net {

namespace {

bool is_one_line(const QString &text)
{
    return std::none_of(text.begin(), text.end(),
                        [](QChar letter) { return letter.category() == QChar::Other_Control; });
}

QByteArray ascii_host(const QString &host)
{
    const QByteArray name = host.contains(u':') ? '[' + host.toLatin1() + ']' : QUrl::toAce(host);
    const bool plain = std::all_of(name.begin(), name.end(), [](char letter) {
        return std::isalnum(uchar(letter)) || letter == '.' || letter == '-' || letter == '_' || letter == ':' ||
               letter == '[' || letter == ']';
    });
    return plain ? name : QByteArray();
}

const char *scheme_of(const place &where)
{
    const bool tls = where.server.secured == mail::security::tls;
    switch (where.speaks) {
    case protocol::imap:
        return tls ? "imaps" : "imap";
    case protocol::pop3:
        return tls ? "pop3s" : "pop3";
    case protocol::smtp:
        break;
    }
    return tls ? "smtps" : "smtp";
}

int port_of(const place &where)
{
    if (where.server.port != 0)
        return where.server.port;
    if (where.speaks == protocol::smtp)
        return mail::usual_smtp_port(where.server.secured);
    return mail::usual_port(where.speaks == protocol::imap ? mail::client_kind::imap : mail::client_kind::pop3,
                            where.server.secured);
}

}

QByteArray url_of(const place &where)
{
    const QByteArray host = ascii_host(where.server.host.trimmed());
    if (host.isEmpty())
        throw failure(trouble::not_configured,
                      where.server.host.trimmed().isEmpty()
                          ? QStringLiteral("No server is set.")
                          : QStringLiteral("\"%1\" cannot be the name of a server.").arg(where.server.host.trimmed()));
    if (!is_one_line(where.server.user) || !is_one_line(where.password) || !is_one_line(where.token))
        throw failure(trouble::not_configured,
                      QStringLiteral("The user name or the password holds a line end or another control character."));
    const QByteArray own_name =
        where.speaks == protocol::smtp ? QUrl::toPercentEncoding(own_smtp_name()) : QByteArray();
    return QByteArray(scheme_of(where)) + "://" + host + ':' + QByteArray::number(port_of(where)) + '/' + own_name;
}

QString name_of(const place &where)
{
    return where.server.host.trimmed();
}

QString own_smtp_name()
{
    return QStringLiteral("[127.0.0.1]");
}

}
