#include "platform/real/chm/chm_directory.h"
#include "platform/real/chm/chm_numbers.h"
#include "platform/real/chm/lzx.h"
#include <algorithm>

namespace {

constexpr qsizetype most_entries = 100000;
constexpr qint64 most_unpacked = 64 * 1024 * 1024; // a help file has some hundred kilobytes

// Where the two headers keep what we need.
constexpr qsizetype directory_place = 0x48;
constexpr qsizetype plain_place = 0x58;
constexpr qsizetype header_length = 0x60;
constexpr qsizetype directory_header_length = 0x54;
constexpr qsizetype chunk_length_place = 0x10;
constexpr qsizetype chunk_count_place = 0x2c;
constexpr qsizetype chunk_header_length = 0x14;

const QString packed_name = QStringLiteral("::DataSpace/Storage/MSCompressed/Content");
const QString control_name = QStringLiteral("::DataSpace/Storage/MSCompressed/ControlData");
const QString reset_table_name = QStringLiteral("::DataSpace/Storage/MSCompressed/Transform/"
                                                "{7FC28940-9D31-11D0-9B27-00A0C91E9C7C}/InstanceData/ResetTable");

void read_chunk(QByteArrayView chunk, chm::directory &found)
{
    const qint64 unused = chm::number32(chunk, 4);
    if (unused < 0 || unused > chunk.size() - chunk_header_length)
        return;
    chm::short_numbers from(chunk.first(chunk.size() - unused).sliced(chunk_header_length));
    while (!from.at_end() && found.entries.size() < most_entries) {
        const QByteArrayView name = from.bytes(from.next());
        const qint64 section = from.next();
        chm::entry one;
        one.is_packed = section == 1;
        one.offset = from.next();
        one.length = from.next();
        if (from.failed())
            return;
        if (section == 0 || section == 1)
            found.entries.insert(QString::fromUtf8(name), one);
    }
}

}

std::optional<chm::directory> chm::read_directory(const QByteArray &file)
{
    if (file.size() < header_length || !file.startsWith("ITSF"))
        return {};
    const QByteArrayView whole(file);
    const qint64 start = number64(whole, directory_place);
    if (start < 0 || start > whole.size() - directory_header_length)
        return {};
    const QByteArrayView head = whole.sliced(start);
    const qint64 chunk_length = number32(head, chunk_length_place);
    if (!head.startsWith("ITSP") || chunk_length < chunk_header_length)
        return {};
    directory found;
    found.plain_start = number64(whole, plain_place);
    // Every chunk in turn: the way through their links might lead in a circle.
    QByteArrayView chunks = head.sliced(directory_header_length);
    for (qint64 left = number32(head, chunk_count_place); left > 0 && chunks.size() >= chunk_length; --left) {
        if (chunks.startsWith("PMGL"))
            read_chunk(chunks.first(chunk_length), found);
        chunks = chunks.sliced(chunk_length);
    }
    if (found.entries.isEmpty())
        return {};
    return found;
}

std::optional<QByteArrayView> chm::plain_bytes(const QByteArray &file, const directory &where, const entry &wanted)
{
    const qint64 room = file.size() - where.plain_start;
    if (where.plain_start < 0 || wanted.offset < 0 || wanted.length < 0 || wanted.offset > room ||
        wanted.length > room - wanted.offset)
        return {};
    return QByteArrayView(file).sliced(where.plain_start + wanted.offset, wanted.length);
}

chm::packed_part::packed_part(const QByteArray &file, const directory &where)
{
    const auto part = [&](const QString &name) {
        return plain_bytes(file, where, where.entries.value(name)).value_or(QByteArrayView());
    };
    const QByteArrayView control = part(control_name);
    const QByteArrayView table = part(reset_table_name);
    if (control.size() < 0x14 || !control.sliced(4).startsWith("LZXC") || table.size() < 0x28)
        return;
    const qint64 unit = number32(control, 8) == 2 ? lzx_frame : 1;
    const qint64 stretch = number32(control, 0xc) * unit;
    const qint64 window = number32(control, 0x10) * unit;
    int window_bits = 15;
    while (window_bits < 21 && (qint64(1) << window_bits) < window)
        ++window_bits;
    if (stretch <= 0 || stretch > most_unpacked || stretch % lzx_frame != 0 || window != qint64(1) << window_bits)
        return;
    unpack(part(packed_name), table, stretch, window_bits);
}

void chm::packed_part::unpack(QByteArrayView packed, QByteArrayView table, qint64 stretch, int window_bits)
{
    const qint64 length = number64(table, 0x10);
    const qint64 places = qMin(number32(table, 4), (table.size() - 0x28) / 8);
    if (length < 0 || length > most_unpacked || number32(table, 8) != 8)
        return;
    stretch_length = stretch;
    const auto place = [&](qint64 frame) { return frame < places ? number64(table, 0x28 + frame * 8) : packed.size(); };
    for (qint64 at = 0; at < length; at += stretch) {
        const qint64 begin = place(at / lzx_frame);
        const qint64 end = place((at + stretch) / lzx_frame);
        const qint64 wanted = qMin(stretch, length - at);
        std::optional<QByteArray> plain;
        if (at / lzx_frame < places && begin >= 0 && begin <= end && end <= packed.size())
            plain = unpack_lzx(packed.sliced(begin, end - begin), wanted, window_bits);
        good.push_back(plain.has_value());
        unpacked += plain ? *plain : QByteArray(wanted, ' ');
    }
}

std::optional<QByteArray> chm::packed_part::bytes(const entry &wanted) const
{
    if (wanted.offset < 0 || wanted.length < 0 || wanted.offset > unpacked.size() ||
        wanted.length > unpacked.size() - wanted.offset)
        return {};
    if (wanted.length == 0)
        return QByteArray();
    for (qint64 at = wanted.offset / stretch_length; at <= (wanted.offset + wanted.length - 1) / stretch_length; ++at) {
        if (!good[size_t(at)])
            return {};
    }
    return unpacked.mid(wanted.offset, wanted.length);
}
