// Reading one mail's file.
#pragma once
#include <QByteArray>
#include <optional>

namespace maildir {

constexpr qint64 longest_mail = 32 * 1024 * 1024; // bytes; what lies beyond is not read

struct file_bytes {
    QByteArray bytes;
    bool whole = false;
};

// All of a small file, of a bigger one at least the header. Nothing when it is gone, closed to us, or no plain file;
// failure is then the system's error number, 0 for what is no plain file.
std::optional<file_bytes> read_head_bytes(const QByteArray &path, int &failure);
std::optional<QByteArray> read_whole(const QByteArray &path, int &failure);

}
