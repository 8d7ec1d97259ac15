#include "support/mail_servers.h"

dovecot_server &mail_servers::dovecot(const certificate_files &shown)
{
    std::unique_ptr<dovecot_server> &server = dovecots[shown.certificate];
    if (!server) {
        dovecot_options options;
        options.certificate = shown;
        options.mechanisms = QStringList{"plain", "login", "xoauth2"};
        server = std::make_unique<dovecot_server>(options);
    }
    return *server;
}

smtp_sink &mail_servers::sink(mail::security secured, const certificate_files &shown)
{
    const bool at_once = secured == mail::security::tls;
    std::unique_ptr<smtp_sink> &server = sinks[shown.certificate + QLatin1String(name_of(secured))];
    if (!server)
        server = std::make_unique<smtp_sink>(smtp_options{.certificate = shown,
                                                          .tls_at_once = at_once,
                                                          .user = QStringLiteral("ann"),
                                                          .password = QStringLiteral("apple tree"),
                                                          .token = QStringLiteral("token-of-ann")});
    return *server;
}

net::place mail_servers::place_of(net::protocol speaks, mail::security secured, const certificate_files &shown)
{
    net::place where = place_at(speaks, secured, 0);
    const bool at_once = secured == mail::security::tls;
    if (speaks == net::protocol::smtp) {
        where.server.port = sink(secured, shown).port();
    } else {
        const dovecot_server &server = dovecot(shown);
        where.server.port = speaks == net::protocol::imap ? (at_once ? server.imaps_port : server.imap_port)
                                                          : (at_once ? server.pop3s_port : server.pop3_port);
    }
    where.authority_file = made.authority();
    return where;
}

QString mail_servers::seen(net::protocol speaks, mail::security secured, const certificate_files &shown)
{
    if (speaks != net::protocol::smtp)
        return dovecot(shown).log();
    const smtp_sink &server = sink(secured, shown);
    return QStringLiteral("%1 logins; ").arg(server.logins()) + QString::fromUtf8(server.complaints().join("; "));
}

net::place place_at(net::protocol speaks, mail::security secured, quint16 port)
{
    net::place where;
    where.speaks = speaks;
    where.server = {QStringLiteral("127.0.0.1"), port, secured, QStringLiteral("ann")};
    where.password = QStringLiteral("apple tree");
    return where;
}

net::patience short_patience(int connect_ms, int answer_ms)
{
    net::patience patience;
    patience.connect_ms = connect_ms;
    patience.answer_ms = answer_ms;
    return patience;
}

connecting::connecting(const net::place &where, const net::patience &patience)
{
    try {
        stream = std::make_unique<net::stream>(where, patience);
    } catch (const run_time_error &error) {
        number = error.number;
        description = error.description;
    }
}

const QList<net::protocol> &all_protocols()
{
    static const QList<net::protocol> all{net::protocol::imap, net::protocol::pop3, net::protocol::smtp};
    return all;
}

const char *name_of(net::protocol speaks)
{
    return speaks == net::protocol::imap ? "IMAP" : speaks == net::protocol::pop3 ? "POP3" : "SMTP";
}

const char *name_of(mail::security secured)
{
    return secured == mail::security::tls ? "TLS" : secured == mail::security::starttls ? "STARTTLS" : "plain";
}
