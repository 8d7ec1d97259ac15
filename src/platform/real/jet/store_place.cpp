// A copy that was looked at (store_file.cpp) takes the store's place.
#include "platform/outside_effects.h"
#include "platform/real/durable_file.h"
#include "platform/real/jet/side_files.h"
#include "platform/store_file.h"

#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace store_file {

namespace {

using name = QByteArray;

[[noreturn]] void fail(int code, const name &path)
{
    const QString where = QFile::decodeName(path);
    if (code == EEXIST)
        throw run_time_error{58, QStringLiteral("File already exists: ") + where};
    if (code == ENOSPC || code == EDQUOT || code == EFBIG)
        throw run_time_error{61, QStringLiteral("Disk full: ") + where};
    if (code == EACCES || code == EPERM || code == EROFS)
        throw run_time_error{70, QStringLiteral("Permission denied: ") + where};
    throw run_time_error{75, QStringLiteral("Path/File access error: ") + where + QStringLiteral(": ") +
                                 QString::fromLocal8Bit(strerror(code))};
}

// On disk, and with the modes of the store that it follows.
void make_ready(const name &copy, const name &store)
{
    struct stat present = {};
    const mode_t mode = stat(store.constData(), &present) == 0 ? present.st_mode & 0777 : 0644;
    const int file = ::open(copy.constData(), O_RDWR | O_NOFOLLOW | O_CLOEXEC);
    if (file < 0)
        fail(errno, copy);
    const int failure = fchmod(file, mode) == 0 && fsync(file) == 0 ? 0 : errno;
    ::close(file);
    if (failure != 0)
        fail(failure, copy);
}

// Goes when what was begun with it is not done.
struct kept_store {
    const name path;
    bool stays = false;
    ~kept_store()
    {
        if (!stays)
            ::unlink(path.constData());
    }
};

void copy_all(const name &from, const name &to)
{
    QFile present(QFile::decodeName(from));
    if (!present.open(QIODevice::ReadOnly))
        fail(EACCES, from);
    constexpr qint64 piece = 1 << 20;
    kept_store made{to};
    for (QByteArray bytes = present.read(piece); !bytes.isEmpty(); bytes = present.read(piece))
        append_to_file(QFile::decodeName(to), bytes);
    make_ready(to, from);
    made.stays = true;
}

// A second name for the same file; where the file system has none, a copy.
void keep_under(const name &kept, const name &store)
{
    if (::link(store.constData(), kept.constData()) == 0 || errno == ENOENT)
        return;
    if (errno == EEXIST)
        fail(errno, kept);
    copy_all(store, kept);
}

}

void take_place(const QString &store, const QString &kept)
{
    before_outside_effect();
    const name present = QFile::encodeName(store);
    const name aside = QFile::encodeName(kept);
    const name copy = present + ".new";
    make_ready(copy, present);
    keep_under(aside, present);
    kept_store former{aside};
    jet::side_files beside(present, aside); // beside another store they would spoil that
    const int failure = beside.move();
    if (failure != 0)
        fail(failure, present);
    if (::rename(copy.constData(), present.constData()) != 0)
        fail(errno, present);
    former.stays = beside.stay = true;
    is_folder_synced(QFileInfo(store).absolutePath()); // it has taken the place either way
}

}
