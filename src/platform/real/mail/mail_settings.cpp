#include "platform/real/mail/mail_settings.h"
#include "platform/app_folder.h"
#include "platform/settings.h"
#include <QDir>

namespace mail {

namespace {

QString client_setting(const QString &key)
{
    return GetSetting(QStringLiteral("mail_client"), key);
}

}

client_kind configured_kind()
{
    const QString kind = client_setting(QStringLiteral("kind")).toLower();
    if (kind == u"imap")
        return client_kind::imap;
    if (kind == u"pop3")
        return client_kind::pop3;
    return kind == u"mbox" ? client_kind::mbox : client_kind::maildir;
}

bool has_folders(client_kind kind)
{
    return kind == client_kind::maildir || kind == client_kind::imap;
}

maildir_place maildir_path()
{
    const QString set = client_setting(QStringLiteral("maildir"));
    if (set.startsWith(u"~/"))
        return {QDir::home().filePath(set.sliced(2))};
    if (!set.isEmpty())
        return {QDir::cleanPath(set)};
    const QString at_home = QDir::home().filePath(QStringLiteral("Maildir"));
    if (QDir(at_home).exists())
        return {at_home};
    return {app_path(u"\\mail"), true};
}

QString from_setting()
{
    return client_setting(QStringLiteral("from"));
}

}
