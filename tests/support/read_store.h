// The store as any other tool reads it, for tests that look at what a killed or cut run left behind.
#pragma once
#include <QStringList>

// One column of the rows; a failure is one line that begins with "!".
QStringList read_store(const QString &path, const char *sql);
