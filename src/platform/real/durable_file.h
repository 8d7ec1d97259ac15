// Files of bytes that are whole or not there, whatever happens in between.
#pragma once
#include "platform/run_time_error.h"
#include <QByteArray>
#include <QString>
#include <vector>

struct named_bytes {
    QString name;
    QByteArray bytes;
};

// The folder, made and known to the disk; nothing when it is there. Throws 70 or 61.
void make_durable_folder(const QString &path);

// Two files that belong together: both are on disk when this returns, and the second one is never there without the
// first. A failure throws 61 (disk full) or 70 and leaves neither.
void write_durable_pair(const QString &folder, const named_bytes &first, const named_bytes &second);

// One file in the place of an older one, or a new one: on disk when this returns. A failure throws 61 or 70 and leaves
// the older one.
void replace_durably(const QString &folder, const named_bytes &file);
// Many of them, each for itself: what a failure leaves is some of the new ones and the others as they were.
void replace_all_durably(const QString &folder, const std::vector<named_bytes> &files);

// What was made, renamed or taken away in the folder is on disk when this returns. Throws 70 or 61.
void sync_folder(const QString &path);
bool is_folder_synced(const QString &path); // the same, where what was done stands even when the disk does not say so

// Behind what the file holds; made when it is not there. Survives the process, not a power cut. Throws 61 or 70.
void append_to_file(const QString &path, const QByteArray &bytes);
