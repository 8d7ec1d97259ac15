#include "platform/mail_settings.h"
#include "platform/app_folder.h"
#include "platform/real/named_values.h"
#include "platform/settings.h"
#include <QDir>

namespace mail {

namespace {

const QString group = QStringLiteral("mail_client");

constexpr std::array<named_value<client_kind>, 4> kinds{{{client_kind::maildir, QLatin1String("maildir")},
                                                         {client_kind::imap, QLatin1String("imap")},
                                                         {client_kind::pop3, QLatin1String("pop3")},
                                                         {client_kind::mbox, QLatin1String("mbox")}}};
constexpr std::array<named_value<security>, 3> securities{{{security::none, QLatin1String("none")},
                                                           {security::starttls, QLatin1String("starttls")},
                                                           {security::tls, QLatin1String("tls")}}};
constexpr std::array<named_value<send_by>, 3> roads{{{send_by::smtp, QLatin1String("smtp")},
                                                     {send_by::sendmail, QLatin1String("sendmail")},
                                                     {send_by::keep, QLatin1String("keep")}}};

QString read(const char *key)
{
    return GetSetting(group, QLatin1String(key));
}

// Typed by hand in any capitals.
template <typename Names, typename Value>
Value value_in(const Names &names, const char *key, Value otherwise)
{
    return value_named(names, read(key), otherwise, Qt::CaseInsensitive);
}

// One by hand in the file is enough: a token command says by itself that there is a token.
bool wants_token(const QString &login, const QString &command)
{
    return login.isEmpty() ? !command.isEmpty() : login.compare(u"xoauth2", Qt::CaseInsensitive) == 0;
}

QString port_text(int port)
{
    return port == 0 ? QString() : QString::number(port);
}

int port_in(const QString &text)
{
    const int port = text.toInt();
    return port > 0 && port < 65536 ? port : 0;
}

QString from_home(const QString &path)
{
    return path.startsWith(u"~/") ? QDir::home().filePath(path.sliced(2)) : QDir::cleanPath(path);
}

constexpr int usual_mailings_per_hour = 450;

}

client_settings read_client_settings()
{
    client_settings found;
    found.configured = !read("kind").isEmpty();
    found.kind = value_in(kinds, "kind", client_kind::maildir);
    found.maildir = read("maildir");
    found.mbox = read("mbox");
    found.incoming = {read("host"), port_in(read("port")), value_in(securities, "security", security::tls),
                      read("user")};
    found.sending = value_in(roads, "send", send_by::keep);
    found.smtp = {read("smtp_host"), port_in(read("smtp_port")), value_in(securities, "smtp_security", security::tls),
                  read("smtp_user")};
    found.smtp_logs_in = read("smtp_login") != u"no";
    found.from = read("from");
    found.token_command = read("token_command");
    found.use_token = wants_token(read("login"), found.token_command);
    found.authority_file = read("authority_file");
    bool is_number = false;
    const int limit = read("mailings_per_hour").toInt(&is_number);
    found.mailings_per_hour = is_number && limit >= 0 ? limit : usual_mailings_per_hour;
    return found;
}

void write_client_settings(const client_settings &settings)
{
    SaveSettings(group, {{"kind", settings.configured ? name_of(kinds, settings.kind) : QString()},
                         {"maildir", settings.maildir},
                         {"mbox", settings.mbox},
                         {"host", settings.incoming.host},
                         {"port", port_text(settings.incoming.port)},
                         {"security", name_of(securities, settings.incoming.secured)},
                         {"user", settings.incoming.user},
                         {"login", settings.use_token ? QStringLiteral("xoauth2") : QStringLiteral("password")},
                         {"token_command", settings.token_command},
                         {"send", name_of(roads, settings.sending)},
                         {"smtp_host", settings.smtp.host},
                         {"smtp_port", port_text(settings.smtp.port)},
                         {"smtp_security", name_of(securities, settings.smtp.secured)},
                         {"smtp_user", settings.smtp.user},
                         {"smtp_login", settings.smtp_logs_in ? QStringLiteral("yes") : QStringLiteral("no")},
                         {"from", settings.from},
                         {"authority_file", settings.authority_file},
                         {"mailings_per_hour", QString::number(settings.mailings_per_hour)}});
}

client_kind configured_kind()
{
    return value_in(kinds, "kind", client_kind::maildir);
}

bool has_folders(client_kind kind)
{
    return kind == client_kind::maildir || kind == client_kind::imap;
}

int usual_port(client_kind kind, security secured)
{
    const bool is_pop3 = kind == client_kind::pop3;
    if (secured == security::tls)
        return is_pop3 ? 995 : 993;
    return is_pop3 ? 110 : 143;
}

int usual_smtp_port(security secured)
{
    if (secured == security::tls)
        return 465;
    return secured == security::starttls ? 587 : 25;
}

maildir_place maildir_path()
{
    return maildir_path(read("maildir"));
}

maildir_place maildir_path(const QString &set)
{
    if (!set.isEmpty())
        return {from_home(set)};
    const QString at_home = QDir::home().filePath(QStringLiteral("Maildir"));
    if (QDir(at_home).exists())
        return {at_home};
    return {app_path(u"\\mail"), true};
}

QString mbox_path()
{
    return mbox_path(read("mbox"));
}

QString mbox_path(const QString &set)
{
    return set.isEmpty() ? QString() : from_home(set);
}

QString from_setting()
{
    return read("from");
}

}
