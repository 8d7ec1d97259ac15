#include "platform/real/loseable_file.h"
#include <QFile>
#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

namespace loseable_file {

namespace {

constexpr mode_t of_the_owner = 0600;
constexpr const char *tails[] = {"", "-wal", "-shm", "-journal"};

}

bool is_spoilt(int sqlite_result)
{
    switch (sqlite_result & 0xFF) {
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
    case SQLITE_ERROR: // a statement that does not fit the tables
    case SQLITE_CONSTRAINT:
    case SQLITE_MISMATCH:
        return true;
    default:
        return false;
    }
}

// A file that is there is not opened: closing it would let go of the locks that SQLite has on it in this process.
void make_private(const QString &path)
{
    const int made = ::open(QFile::encodeName(path).constData(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, of_the_owner);
    if (made >= 0) {
        ::close(made);
        return;
    }
    for (const char *tail : tails) {
        const QByteArray name = QFile::encodeName(path) + tail;
        struct stat found;
        if (::stat(name.constData(), &found) == 0 && S_ISREG(found.st_mode) && (found.st_mode & 077) != 0)
            ::chmod(name.constData(), found.st_mode & of_the_owner);
    }
}

void remove(const QString &path)
{
    for (const char *tail : tails)
        QFile::remove(path + QLatin1String(tail));
}

}
