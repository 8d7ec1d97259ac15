// Looking at a chosen file before it becomes the store. How it takes the place: store_place.cpp.
#include "platform/store_file.h"
#include "platform/outside_effects.h"
#include "platform/real/durable_file.h"
#include "platform/real/jet/side_files.h"
#include "platform/real/jet/store_copy.h"

#include <QFile>
#include <QFileInfo>
#include <QtEndian>
#include <sqlite3.h>

namespace store_file {

namespace {

constexpr quint32 our_application = 0x5453534C; // "TSSL", as the store is delivered
constexpr auto sqlite_mark = "SQLite format 3";
constexpr qint64 header_size = 100;
constexpr int application_at = 68;

struct closer {
    sqlite3 *db = nullptr;
    ~closer() { sqlite3_close(db); }
};

QByteArray header_of(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.read(header_size) : QByteArray();
}

bool is_foreign_format(const QByteArray &header)
{
    const QByteArray start = header.mid(4);
    return start.startsWith("Standard Jet DB") || start.startsWith("Standard ACE DB");
}

// The first value of the first row, "" for none; what cannot be asked is "(failed)".
QByteArray answer(sqlite3 *db, const QByteArray &sql)
{
    QByteArray first;
    const auto take = [](void *into, int, char **texts, char **) {
        *static_cast<QByteArray *>(into) = texts[0];
        return 0;
    };
    return sqlite3_exec(db, sql.constData(), take, &first, nullptr) == SQLITE_OK ? first : QByteArray("(failed)");
}

QString missing_table(sqlite3 *db, const QStringList &tables)
{
    for (const QString &table : tables) {
        const QByteArray found = answer(db, "SELECT count(*) FROM sqlite_master WHERE type='table' AND name='" +
                                                table.toUtf8().replace('\'', "''") + "' COLLATE NOCASE");
        if (found != "1")
            return table;
    }
    return {};
}

// Programs inside the file: a store has none, and what they would do with what is written to it, nobody knows.
bool holds_programs(sqlite3 *db)
{
    return answer(db, "SELECT count(*) FROM sqlite_master WHERE type IN ('trigger','view') OR "
                      "sql LIKE 'CREATE VIRTUAL%'") != "0";
}

QString fault_of(const QString &path, const QStringList &tables)
{
    closer file;
    if (sqlite3_open_v2(QFile::encodeName(path).constData(), &file.db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX,
                        nullptr) != SQLITE_OK)
        return QStringLiteral("it is damaged");
    sqlite3_db_config(file.db, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(file.db, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    // The first question ends what was left unfinished; one file then holds everything.
    if (answer(file.db, "PRAGMA journal_mode=DELETE") != "delete" || !jet::is_sound(file.db))
        return QStringLiteral("it is damaged");
    if (answer(file.db, "PRAGMA application_id") != QByteArray::number(our_application))
        return QStringLiteral("it is no store of Tessaly");
    if (holds_programs(file.db))
        return QStringLiteral("it holds triggers or views, which no store of Tessaly has");
    const QString missing = missing_table(file.db, tables);
    return missing.isEmpty() ? QString() : QStringLiteral("the table ") + missing + QStringLiteral(" is missing in it");
}

void copy_bytes(const QString &from, const QString &to)
{
    QFile source(from);
    if (!source.open(QIODevice::ReadOnly))
        throw run_time_error{
            source.exists() ? 70u : 53u,
            (source.exists() ? QStringLiteral("Permission denied: ") : QStringLiteral("File not found: ")) + from};
    constexpr qint64 piece = 1 << 20;
    for (QByteArray bytes = source.read(piece); !bytes.isEmpty(); bytes = source.read(piece))
        append_to_file(to, bytes);
    if (source.error() != QFileDevice::NoError)
        throw run_time_error{75, QStringLiteral("Path/File access error: ") + from + QStringLiteral(": ") +
                                     source.errorString()};
    if (source.size() == 0)
        append_to_file(to, {});
}

// Gone again unless it is to stay.
struct copy_beside {
    QString store;
    bool stays = false;
    ~copy_beside()
    {
        if (!stays)
            drop_copy_beside(store);
    }
};

}

bool is_of_ours(const QString &path)
{
    const QByteArray header = header_of(path);
    return header.size() == header_size && header.startsWith(sqlite_mark) &&
           qFromBigEndian<quint32>(header.constData() + application_at) == our_application;
}

QString lay_copy_beside(const QString &chosen, const QString &store, const QStringList &tables)
{
    before_outside_effect();
    const QString real = QFileInfo(chosen).canonicalFilePath();
    if (!real.isEmpty() && real == QFileInfo(store).canonicalFilePath())
        return QStringLiteral("it is the store that is in use");
    if (!real.isEmpty() && real == QFileInfo(store + ".new").canonicalFilePath())
        return QStringLiteral("a restore that was broken off left it behind; give it another name first");
    const QByteArray header = header_of(chosen);
    if (is_foreign_format(header))
        return QStringLiteral("it is a database file of another program's format");
    if (QFileInfo(chosen).isReadable() && !header.startsWith(sqlite_mark))
        return QStringLiteral("it is no store of Tessaly");
    drop_copy_beside(store); // of a kill
    copy_beside made{store};
    copy_bytes(chosen, store + ".new");
    for (const char *side : {"-journal", "-wal"})
        if (QFileInfo(chosen + side).isFile() && jet::belongs_beside(QFile::encodeName(chosen), side))
            copy_bytes(chosen + side, store + ".new" + side);
    const QString fault = fault_of(store + ".new", tables);
    made.stays = fault.isEmpty();
    jet::remove_side_files(QFile::encodeName(store + ".new"));
    return fault;
}

void drop_copy_beside(const QString &store)
{
    QFile::remove(store + ".new");
    jet::remove_side_files(QFile::encodeName(store + ".new"));
}

}
