#include "platform/real/mail_session/mbox_file.h"
#include <QElapsedTimer>
#include <QFile>
#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace mbox {

namespace {

constexpr int longest_wait_ms = 5000;
constexpr int slice_ms = 50;
constexpr qint64 lock_file_is_left_over = 300; // seconds

file_state state_of(const struct stat &facts)
{
    return {qint64(facts.st_dev), qint64(facts.st_ino), qint64(facts.st_size),
            qint64(facts.st_mtim.tv_sec) * 1000000000 + facts.st_mtim.tv_nsec};
}

run_time_error not_found(const QString &path)
{
    return {76, QStringLiteral("Path not found: ") + path};
}

run_time_error denied(const QString &path)
{
    return {70, QStringLiteral("Permission denied: ") + path};
}

bool lock_file_is_held(const QString &path)
{
    struct stat facts {};
    return stat(QFile::encodeName(path + QStringLiteral(".lock")).constData(), &facts) == 0 &&
           time(nullptr) - facts.st_mtim.tv_sec < lock_file_is_left_over;
}

}

file::file(const QString &at, const net::patience &how_long) : path(at), patience(how_long)
{
    if (path.isEmpty())
        throw net::failure(net::trouble::not_configured, QStringLiteral("No mbox file is set."));
    // Not blocking: a pipe that somebody put there must not hang us.
    number = open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (number < 0)
        throw errno == EACCES || errno == EPERM ? denied(path) : not_found(path);
    struct stat facts {};
    if (fstat(number, &facts) != 0 || !S_ISREG(facts.st_mode)) {
        close(number);
        throw not_found(path);
    }
}

file::~file()
{
    close(number);
}

file_state file::state() const
{
    struct stat facts {};
    return fstat(number, &facts) == 0 ? state_of(facts) : file_state();
}

QByteArray file::read(qint64 at, qint64 size) const
{
    QByteArray bytes(qsizetype(size), Qt::Uninitialized);
    qsizetype have = 0;
    while (have < size) {
        const ssize_t got = pread(number, bytes.data() + have, size_t(size - have), at + have);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            throw run_time_error{57, QStringLiteral("Device I/O error: ") + path};
        if (got == 0)
            break;
        have += got;
    }
    bytes.truncate(have);
    return bytes;
}

file_state state_at(const QString &path)
{
    struct stat facts {};
    return stat(QFile::encodeName(path).constData(), &facts) == 0 ? state_of(facts) : file_state();
}

shared_lock::shared_lock(const file &of) : locked(of)
{
    QElapsedTimer since;
    since.start();
    const int most = qMin(longest_wait_ms, locked.patience.connect_ms);
    while (!take()) {
        if (locked.patience.give_up && locked.patience.give_up())
            throw net::failure(net::trouble::cancelled, QStringLiteral("Cancelled."));
        if (since.elapsed() >= most)
            throw run_time_error{70, QStringLiteral("Permission denied: another program has locked ") + locked.path};
        poll(nullptr, 0, slice_ms);
    }
}

shared_lock::~shared_lock()
{
    let_go();
}

// A file system without locks gives others none either: only a lock that is held counts as no.
bool shared_lock::take() const
{
    if (lock_file_is_held(locked.path) || (flock(locked.number, LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK))
        return false;
    struct flock whole {};
    whole.l_type = F_RDLCK;
    whole.l_whence = SEEK_SET;
    if (fcntl(locked.number, F_OFD_SETLK, &whole) == 0 || (errno != EAGAIN && errno != EACCES))
        return true;
    flock(locked.number, LOCK_UN);
    return false;
}

void shared_lock::let_go() const
{
    struct flock whole {};
    whole.l_type = F_UNLCK;
    whole.l_whence = SEEK_SET;
    fcntl(locked.number, F_OFD_SETLK, &whole);
    flock(locked.number, LOCK_UN);
}

}
