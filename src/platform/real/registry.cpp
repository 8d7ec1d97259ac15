#include "platform/registry.h"
#include "platform/mail_settings.h"

namespace {

const QStringView mail_program_key = u"mailto\\shell\\open\\command";

bool is_mail_program_key(const QString &key)
{
    return key.compare(mail_program_key, Qt::CaseInsensitive) == 0;
}

}

bool registry_key_exists(const QString &key)
{
    return is_mail_program_key(key);
}

QString registry_value(const QString &key)
{
    if (!is_mail_program_key(key))
        return {};
    return mail::has_folders(mail::configured_kind()) ? QStringLiteral("\"\\OUTLOOK.EXE\" -c IPM.Note /m \"%1\"")
                                                      : QStringLiteral("\"\\MAILER.EXE\" /m \"%1\"");
}
