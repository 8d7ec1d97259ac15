#include "support/dovecot_configuration.h"

namespace {

// What Dovecot 2.3.19 offers of itself; imap_capability can only replace the whole list.
constexpr const char *own_capabilities =
    "IMAP4rev1 SASL-IR LOGIN-REFERRALS ID ENABLE IDLE SORT SORT=DISPLAY THREAD=REFERENCES THREAD=REFS "
    "THREAD=ORDEREDSUBJECT MULTIAPPEND URL-PARTIAL CATENATE UNSELECT CHILDREN NAMESPACE UIDPLUS LIST-EXTENDED "
    "I18NLEVEL=1 CONDSTORE QRESYNC ESEARCH ESORT SEARCHRES WITHIN CONTEXT=SEARCH LIST-STATUS BINARY MOVE "
    "SNIPPET=FUZZY PREVIEW=FUZZY PREVIEW STATUS=SIZE SAVEDATE LITERAL+ NOTIFY";

// Runs without root and without a system log, never slows a client down, and never waits for a disk unasked.
constexpr const char *always = R"(base_dir = %1/base
state_dir = %1/state
log_path = %1/dovecot.log
auth_verbose = yes
protocols = imap pop3
listen = %2
default_internal_user = %3
default_login_user = %3
default_internal_group = %4
first_valid_uid = 1
first_valid_gid = 1
auth_failure_delay = 0
mail_max_userip_connections = 0
userdb {
  driver = static
  args = uid=%3 gid=%4 home=%1/home/%u allow_all_users=yes
}
service anvil {
  chroot =
  unix_listener anvil-auth-penalty {
    mode = 0
  }
}
service stats {
  chroot =
}
)";

QString passwords(const QString &folder, const char *file, const QString &mechanisms)
{
    return QStringLiteral("passdb {\n  driver = passwd-file\n  args = %1/%2\n  mechanisms = %3\n}\n")
        .arg(folder, QString::fromLatin1(file), mechanisms);
}

QString login_service(const QString &protocol, quint16 plain, quint16 tls)
{
    return QStringLiteral("service %1-login {\n  chroot =\n  service_count = 0\n"
                          "  inet_listener %1 {\n    port = %2\n  }\n"
                          "  inet_listener %1s {\n    port = %3\n    ssl = yes\n  }\n}\n")
        .arg(protocol)
        .arg(plain)
        .arg(tls);
}

QString offered(const QStringList &hidden)
{
    QStringList left = QString::fromLatin1(own_capabilities).split(u' ');
    for (const QString &name : hidden)
        left.removeAll(name);
    return left.join(u' ');
}

QString setting(const char *name, const QString &value)
{
    return QString::fromLatin1(name) + QStringLiteral(" = ") + value + u'\n';
}

QString tls_settings(const certificate_files &files)
{
    if (files.empty())
        return setting("ssl", QStringLiteral("no"));
    return setting("ssl", QStringLiteral("yes")) + setting("ssl_cert", u'<' + files.certificate) +
           setting("ssl_key", u'<' + files.key);
}

}

QString dovecot_configuration(const dovecot_options &options, const dovecot_place &place)
{
    QString text =
        QString::fromLatin1(always).arg(place.folder, place.host, place.user.name, place.user.group) +
        passwords(place.folder, "users", QStringLiteral("plain login")) +
        passwords(place.folder, "tokens", QStringLiteral("xoauth2 oauthbearer")) +
        login_service(QStringLiteral("imap"), place.imap, place.imaps) +
        login_service(QStringLiteral("pop3"), place.pop3, place.pop3s) + tls_settings(options.certificate) +
        setting("auth_mechanisms", options.mechanisms.join(u' ')) +
        setting("disable_plaintext_auth", options.refuse_plain_logins ? QStringLiteral("yes") : QStringLiteral("no")) +
        setting("mail_fsync", options.fsync) + setting("mail_location", options.mail_location) +
        setting("pop3_uidl_format", options.uidl) +
        QStringLiteral("namespace inbox {\n  inbox = yes\n  prefix = %1\n  separator = %2\n}\n")
            .arg(options.prefix, options.separator);
    if (!options.hidden_capabilities.isEmpty())
        text += setting("imap_capability", offered(options.hidden_capabilities));
    return text + options.more.join(u'\n') + u'\n';
}
