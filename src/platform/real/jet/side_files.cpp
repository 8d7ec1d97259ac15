#include "platform/real/jet/side_files.h"

#include <QFile>
#include <QtEndian>
#include <cerrno>
#include <cstdio>
#include <unistd.h>

namespace jet {

namespace {

constexpr qint64 header_size = 100;
constexpr qint64 segment_start_size = 28;
constexpr quint32 smallest_sector = 32, smallest_page = 512;
constexpr int page_size_at = 16, write_version_at = 18, counter_at = 24, pages_at = 28, version_valid_for_at = 92;
constexpr char log_version = 2; // a file whose changes go to a log

quint32 number_at(const QByteArray &bytes, qsizetype at)
{
    return qFromBigEndian<quint32>(bytes.constData() + at);
}

qint64 page_size_of(const QByteArray &header)
{
    const quint16 size = qFromBigEndian<quint16>(header.constData() + page_size_at);
    return size == 1 ? 65536 : size;
}

bool begins_segment(const QByteArray &start)
{
    return start.size() == segment_start_size && start.startsWith("\xd9\xd5\x05\xf9\x20\xa1\x63\xd7");
}

// The first page as it was before the change, empty when the change has not come to it. A journal is segments, each
// beginning a sector, with the number of its records: page number, page, check sum.
QByteArray first_page_in(QFile &journal, qint64 sector, qint64 page_size)
{
    constexpr quint32 all_that_follow = 0xffffffff;
    const qint64 record = page_size + 8;
    for (qint64 segment = 0; journal.seek(segment);) {
        const QByteArray start = journal.read(segment_start_size);
        if (!begins_segment(start))
            break;
        const qint64 fitting = (journal.size() - segment - sector) / record;
        const quint32 told = number_at(start, 8);
        const qint64 records = told == all_that_follow ? fitting : qMin<qint64>(fitting, told);
        if (records <= 0)
            break;
        for (qint64 number = 0; number < records; ++number)
            if (journal.seek(segment + sector + number * record) && journal.read(4) == QByteArray("\0\0\0\1", 4))
                return journal.read(header_size);
        segment = (segment + sector + records * record + sector - 1) / sector * sector;
    }
    return {};
}

// By the counter that each change raises, and by the number of pages at its beginning.
bool journal_belongs(const QByteArray &header, QFile &journal)
{
    const QByteArray start = journal.read(segment_start_size);
    if (!begins_segment(start) || number_at(start, 20) < smallest_sector || number_at(start, 24) < smallest_page ||
        number_at(start, 24) != page_size_of(header))
        return false;
    const quint32 pages_before = number_at(start, 16);
    const QByteArray before = first_page_in(journal, number_at(start, 20), page_size_of(header));
    if (before.size() == header_size)
        return number_at(header, counter_at) - number_at(before, counter_at) <= 1;
    const quint32 pages = number_at(header, pages_at);
    const bool is_counted = pages > 0 && number_at(header, counter_at) == number_at(header, version_valid_for_at);
    return !is_counted || pages == pages_before;
}

bool log_belongs(const QByteArray &header, QFile &log)
{
    const QByteArray start = log.read(32);
    return header[write_version_at] == log_version && start.size() == 32 && number_at(start, 8) == page_size_of(header);
}

}

side_files::~side_files()
{
    for (const char *side : side_names)
        if (!stay)
            ::rename((to + side).constData(), (of + side).constData());
}

int side_files::move() const
{
    for (const char *side : side_names)
        if (::rename((of + side).constData(), (to + side).constData()) != 0 && errno != ENOENT)
            return errno;
    return 0;
}

void remove_side_files(const QByteArray &of)
{
    for (const char *side : side_names)
        ::unlink((of + side).constData());
}

bool belongs_beside(const QByteArray &path, const char *side)
{
    QFile file(QFile::decodeName(path));
    QFile beside(QFile::decodeName(path + side));
    if (!file.open(QIODevice::ReadOnly) || !beside.open(QIODevice::ReadOnly))
        return false;
    const QByteArray header = file.read(header_size);
    if (header.size() < header_size)
        return false;
    return qstrcmp(side, "-journal") == 0 ? journal_belongs(header, beside)
                                          : qstrcmp(side, "-wal") == 0 && log_belongs(header, beside);
}

}
