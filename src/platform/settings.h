// The per-user settings: brenmoorbiz.conf in the user's configuration folder, mode 0600. A key lies in a section
// ("main", "mail_client", "tests"). What is saved is on disk when SaveSetting returns; a failure throws.
#pragma once
#include <QString>
#include <vector>

QString GetSetting(const QString &section, const QString &key, const QString &otherwise = {});
void SaveSetting(const QString &section, const QString &key, const QString &value);
void DeleteSetting(const QString &section, const QString &key); // nothing when it is not there

// Several keys by one write: a kill leaves all of them as they were or all of them new.
struct key_value {
    QString key, value;
};
void SaveSettings(const QString &section, const std::vector<key_value> &values);
