#include "platform/real/jet/store_copy.h"
#include "platform/real/durable_file.h"
#include "platform/real/jet/failures.h"
#include "platform/real/jet/side_files.h"
#include <QFile>
#include <QFileInfo>
#include <cstdio>
#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

namespace jet {

namespace {

constexpr int pages_a_step = 512; // 2 MiB

// Removes the half-made copy unless it became the target.
struct unfinished_copy {
    QString path;
    ~unfinished_copy()
    {
        QFile::remove(path);
        QFile::remove(path + "-journal");
    }
};

[[noreturn]] void refuse_copy(const QString &target, const QString &why)
{
    fail(ado::store_failure, QStringLiteral("The store could not be copied to '") + target + "': " + why);
}

void copy_pages(sqlite3 *from, sqlite3 *to, const QString &target, const ado::Connection::told_pages &told)
{
    sqlite3_backup *copying = sqlite3_backup_init(to, "main", from, "main");
    if (!copying)
        refuse_copy(target, QString::fromUtf8(sqlite3_errmsg(to)));
    int stepped = SQLITE_OK;
    while (stepped == SQLITE_OK) {
        stepped = sqlite3_backup_step(copying, pages_a_step);
        const qint64 total = sqlite3_backup_pagecount(copying);
        if (told && (stepped == SQLITE_OK || stepped == SQLITE_DONE))
            told(total - sqlite3_backup_remaining(copying), total);
    }
    const int finished = sqlite3_backup_finish(copying);
    if (stepped != SQLITE_DONE || finished != SQLITE_OK)
        refuse_copy(target, QString::fromUtf8(sqlite3_errstr(stepped == SQLITE_DONE ? finished : stepped)));
}

void write_copy(sqlite3 *from, const QString &path, const QString &target, const ado::Connection::told_pages &told)
{
    sqlite3 *to = nullptr;
    struct closer {
        sqlite3 *&db;
        ~closer() { sqlite3_close(db); }
    } closes{to};
    if (sqlite3_open_v2(QFile::encodeName(path).constData(), &to, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE,
                        nullptr) != SQLITE_OK)
        refuse_copy(target, to ? QString::fromUtf8(sqlite3_errmsg(to)) : QString());
    copy_pages(from, to, target, told);
    if (!is_sound(to))
        refuse_copy(target, QStringLiteral("the copy is not sound"));
}

// Empty, for those only who may read the store.
void begin_copy(const QString &path, const QString &from_path, const QString &target)
{
    struct stat present = {};
    const bool is_known = ::stat(QFile::encodeName(from_path).constData(), &present) == 0;
    const mode_t mode = (is_known ? present.st_mode & 0666 : 0) | S_IRUSR | S_IWUSR;
    const int file =
        ::open(QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode);
    if (file < 0)
        refuse_copy(target, qt_error_string());
    ::close(file);
}

// A journal beside the older file would bring its rows back into the new one; both are on disk before that comes.
void let_take_place(const QString &made, const QString &target)
{
    const QByteArray to = QFile::encodeName(target);
    remove_side_files(to + ".former"); // of a kill
    side_files former(to, to + ".former");
    const QString folder = QFileInfo(target).absolutePath();
    if (former.move() != 0 || !is_folder_synced(folder) || std::rename(QFile::encodeName(made).constData(), to) != 0)
        refuse_copy(target, qt_error_string());
    former.stay = true;
    remove_side_files(to + ".former");
    if (!is_folder_synced(folder))
        refuse_copy(target, qt_error_string());
}

bool sync_path(const QString &path)
{
    const int file = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return false;
    const bool synced = ::fsync(file) == 0;
    ::close(file);
    return synced;
}

}

bool is_sound(sqlite3 *store, int *result)
{
    bool sound = false;
    const auto look = [](void *into, int, char **texts, char **) {
        *static_cast<bool *>(into) = qstrcmp(texts[0], "ok") == 0;
        return 0;
    };
    const int ended = sqlite3_exec(store, "PRAGMA quick_check", look, &sound, nullptr);
    if (result)
        *result = ended;
    return ended == SQLITE_OK && sound;
}

void copy_store_file(sqlite3 *from, const QString &from_path, const QString &target,
                     const ado::Connection::told_pages &told)
{
    if (QFileInfo(target).canonicalFilePath() == QFileInfo(from_path).canonicalFilePath())
        refuse_copy(target, QStringLiteral("it is the store itself"));
    const unfinished_copy made{target + ".tmp"};
    QFile::remove(made.path);
    QFile::remove(made.path + "-journal");
    begin_copy(made.path, from_path, target);
    write_copy(from, made.path, target, told);
    if (!sync_path(made.path))
        refuse_copy(target, qt_error_string());
    let_take_place(made.path, target);
}

}
