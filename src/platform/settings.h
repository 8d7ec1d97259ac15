// The per-user settings: brenmoorbiz.conf in the user's configuration folder, mode 0600. A key lies in a section
// ("main", "mail_client", "tests"). What is saved is on disk when SaveSetting returns; a failure throws.
#pragma once
#include <QString>

QString GetSetting(const QString &section, const QString &key, const QString &otherwise = {});
void SaveSetting(const QString &section, const QString &key, const QString &value);
