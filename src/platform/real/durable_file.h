// Files of bytes that are whole or not there, whatever happens in between.
#pragma once
#include "platform/run_time_error.h"
#include <QByteArray>
#include <QString>

struct named_bytes {
    QString name;
    QByteArray bytes;
};

// The folder, made and known to the disk; nothing when it is there. Throws 70 or 61.
void make_durable_folder(const QString &path);

// Two files that belong together: both are on disk when this returns, and the second one is never there without the
// first. A failure throws 61 (disk full) or 70 and leaves neither.
void write_durable_pair(const QString &folder, const named_bytes &first, const named_bytes &second);
