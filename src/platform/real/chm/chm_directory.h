// The directory of a .chm: which file inside it lies where. And the bytes of each.
#pragma once
#include <QByteArray>
#include <QHash>
#include <QString>
#include <optional>
#include <vector>

namespace chm {

struct entry {
    bool is_packed = false;
    qint64 offset = 0; // in the packed stretches, unpacked, or in the plain part
    qint64 length = 0;
};

struct directory {
    qint64 plain_start = 0;        // of the plain part, in the file
    QHash<QString, entry> entries; // by the names as they stand there
};

std::optional<directory> read_directory(const QByteArray &file);

// What the packed part unpacks to. Stretches that are damaged are told as such, and filled with nothing.
class packed_part {
public:
    packed_part(const QByteArray &file, const directory &where);
    std::optional<QByteArray> bytes(const entry &wanted) const;

private:
    void unpack(QByteArrayView packed, QByteArrayView table, qint64 stretch, int window_bits);

    QByteArray unpacked;
    std::vector<bool> good; // one a stretch
    qint64 stretch_length = 0;
};

// Of the plain part.
std::optional<QByteArrayView> plain_bytes(const QByteArray &file, const directory &where, const entry &wanted);

}
