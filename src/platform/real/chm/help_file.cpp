#include "platform/help_file.h"
#include "platform/real/chm/chm_directory.h"
#include "platform/real/chm/chm_numbers.h"
#include "platform/real/chm/contents_list.h"
#include "platform/run_time_error.h"

#include <QFile>
#include <QtEndian>

namespace {

constexpr qint64 longest_help_file = 64 * 1024 * 1024;
constexpr qint64 most_held = 2 * longest_help_file;

// The list of settings inside: the first page is number 2.
QString start_page_in(QByteArrayView settings)
{
    constexpr int first_page = 2;
    qsizetype at = 4;
    while (settings.size() - at >= 4) {
        const int kind = qFromLittleEndian<quint16>(settings.data() + at);
        const qsizetype length = qFromLittleEndian<quint16>(settings.data() + at + 2);
        at += 4;
        if (length > settings.size() - at)
            break;
        if (kind == first_page)
            return QString::fromUtf8(settings.sliced(at, length).toByteArray().constData()); // ends in a zero
        at += length;
    }
    return {};
}

void take_contents(help::help_file &made)
{
    for (const auto &[name, bytes] : made.files.asKeyValueRange()) {
        if (name.endsWith(u".hhc"))
            made.contents = chm::contents_in(bytes);
    }
}

}

std::optional<QByteArray> help::help_file::bytes_of(const QString &name) const
{
    const auto found = files.constFind(name.toLower());
    return found == files.constEnd() ? std::nullopt : std::optional(*found);
}

QStringList help::help_file::pages() const
{
    QStringList names;
    for (auto file = files.constBegin(); file != files.constEnd(); ++file) {
        if (file.key().endsWith(u".html") || file.key().endsWith(u".htm"))
            names += file.key();
    }
    names.sort();
    return names;
}

help::help_file help::help_file_in(const QByteArray &bytes)
{
    constexpr quint32 not_to_be_read = 57;
    const auto where = chm::read_directory(bytes);
    if (!where)
        throw run_time_error{not_to_be_read, "The help file is damaged."};
    const chm::packed_part packed(bytes, *where);
    help_file made;
    qint64 room = most_held; // damaged entries may all name the same bytes
    for (auto one = where->entries.constBegin(); one != where->entries.constEnd(); ++one) {
        if (!one.key().startsWith(u'/') || one.key().endsWith(u'/') || one->length > room)
            continue;
        std::optional<QByteArray> found;
        if (one->is_packed)
            found = packed.bytes(*one);
        else if (const auto plain = chm::plain_bytes(bytes, *where, *one))
            found = plain->toByteArray();
        room -= found ? found->size() : 0;
        if (found && one.key() == u"/#SYSTEM")
            made.start_page = start_page_in(*found);
        else if (found && !one.key().startsWith(u"/#") && !one.key().startsWith(u"/$"))
            made.files.insert(one.key().sliced(1).toLower(), *found);
    }
    if (made.pages().isEmpty())
        throw run_time_error{not_to_be_read, "The help file is damaged: no page of it can be read."};
    take_contents(made);
    return made;
}

help::help_file help::read_help_file(const QString &path)
{
    constexpr quint32 not_found = 53;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw run_time_error{not_found, "The help file " + path + " cannot be opened."};
    return help_file_in(file.read(longest_help_file));
}
