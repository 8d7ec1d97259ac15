// Whole text files in UTF-8, and appending to one. All throw run_time_error 53 (not found), 70 (denied) or 61 (disk
// full), with the file's name in the description.
#pragma once
#include <QString>

bool FileExists(const QString &path);
bool CanRead(const QString &path); // a file that this user may read
QString ReadAll(const QString &path);
void Write(const QString &path, const QString &text);      // to a temporary file beside it, synced, renamed over it
void Append(const QString &path, const QByteArray &bytes); // flushed before it returns
