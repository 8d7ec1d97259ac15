// A file's bytes written and read by a test in one call each.
#pragma once
#include <QByteArray>
#include <QString>

void put_file(const QString &path, const QByteArray &bytes); // ends the test program when it cannot
QByteArray bytes_in(const QString &path);                    // "(none)" where there is no such file
