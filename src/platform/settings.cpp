#include "platform/settings.h"
#include "platform/outside_effects.h"
#include "platform/run_time_error.h"

#include <QFile>
#include <QSettings>

namespace {

QString settings_key(const QString &section, const QString &key)
{
    return section + u'/' + key;
}

}

QString GetSetting(const QString &section, const QString &key, const QString &otherwise)
{
    const QSettings settings(QStringLiteral("brenmoorbiz"));
    const QVariant value = settings.value(settings_key(section, key));
    if (!value.isValid())
        return otherwise;
    // A value typed into the file by hand with commas in it is read as a list.
    return value.metaType().id() == QMetaType::QStringList ? value.toStringList().join(QStringLiteral(", "))
                                                           : value.toString();
}

void SaveSetting(const QString &section, const QString &key, const QString &value)
{
    before_outside_effect();
    QSettings settings(QStringLiteral("brenmoorbiz"));
    settings.setValue(settings_key(section, key), value);
    settings.sync();
    if (settings.status() != QSettings::NoError)
        throw run_time_error{70, QStringLiteral("Permission denied: ") + settings.fileName()};
    QFile::setPermissions(settings.fileName(), QFile::ReadOwner | QFile::WriteOwner); // may hold a password
}
