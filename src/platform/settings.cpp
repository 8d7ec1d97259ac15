#include "platform/settings.h"
#include "platform/outside_effects.h"
#include "platform/run_time_error.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QSettings>

namespace {

QString settings_key(const QString &section, const QString &key)
{
    return section + u'/' + key;
}

// Before anything is written, as it may be a password: a new file takes the modes of the one that it replaces.
void make_private(const QString &path)
{
    QFile file(path);
    if (!file.exists())
        QDir().mkpath(QFileInfo(path).path());
    if (!file.exists() && file.open(QFile::WriteOnly | QFile::NewOnly, QFile::ReadOwner | QFile::WriteOwner))
        file.close();
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
}

// A process killed between making the lock and naming itself in it would hold up the next one for half a minute. A
// lock that is held is never taken away, however old.
void pass_dead_lock(const QString &path)
{
    constexpr int oldest_nameless_ms = 1000;
    const QString lock_path = path + QStringLiteral(".lock"); // of QSettings
    if (!QFile::exists(lock_path))
        return;
    QLockFile lock(lock_path);
    lock.setStaleLockTime(oldest_nameless_ms);
    lock.lock(); // gone again with this object
}

template <typename change>
void change_settings(const change &make)
{
    before_outside_effect();
    QSettings settings(QStringLiteral("brenmoorbiz"));
    make_private(settings.fileName());
    pass_dead_lock(settings.fileName());
    make(settings);
    settings.sync();
    if (settings.status() != QSettings::NoError)
        throw run_time_error{70, QStringLiteral("Permission denied: ") + settings.fileName()};
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
    SaveSettings(section, {{key, value}});
}

void SaveSettings(const QString &section, const std::vector<key_value> &values)
{
    change_settings([&](QSettings &settings) {
        for (const key_value &one : values)
            settings.setValue(settings_key(section, one.key), one.value);
    });
}

void DeleteSetting(const QString &section, const QString &key)
{
    const QString name = settings_key(section, key);
    if (QSettings(QStringLiteral("brenmoorbiz")).contains(name))
        change_settings([&](QSettings &settings) { settings.remove(name); });
}
