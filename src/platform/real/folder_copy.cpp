// Copying a folder with what is in it.
#include "platform/real/folder_tree.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace folder_tree {

namespace {

// A file on its way; one that a kill left behind is overwritten by the next copy, and none is copied itself.
constexpr auto half_name = ".tessaly-copy";

class open_file {
public:
    open_file(const folder &where, const QByteArray &name, int flags)
        : path(where.path_of(name)),
          descriptor(::openat(where.descriptor, name.constData(), flags | O_NOFOLLOW | O_CLOEXEC, 0600))
    {
        if (descriptor < 0)
            fail(errno, path);
    }
    ~open_file() { ::close(descriptor); }
    open_file(const open_file &) = delete;
    open_file &operator=(const open_file &) = delete;

    qint64 read(char *into, size_t room) const
    {
        for (;;) {
            const ssize_t got = ::read(descriptor, into, room);
            if (got >= 0)
                return got;
            if (errno != EINTR)
                fail(errno, path);
        }
    }

    void write(const char *bytes, size_t count) const
    {
        while (count > 0) {
            const ssize_t written = ::write(descriptor, bytes, count);
            if (written < 0 && errno != EINTR)
                fail(errno, path);
            bytes += qMax<ssize_t>(written, 0);
            count -= size_t(qMax<ssize_t>(written, 0));
        }
    }

    const QByteArray path;
    const int descriptor;
};

// The half-made copy goes, unless it has taken its place.
struct half_file {
    explicit half_file(const folder &in) : where(in) { ::unlinkat(where.descriptor, half_name, 0); }
    ~half_file() { ::unlinkat(where.descriptor, half_name, 0); }
    half_file(const half_file &) = delete;
    half_file &operator=(const half_file &) = delete;

    const folder &where;
};

void copy_bytes(const open_file &from, const open_file &to)
{
    std::array<char, 65536> piece;
    while (const qint64 got = from.read(piece.data(), piece.size()))
        to.write(piece.data(), size_t(got));
}

void copy_file(const folder &from, const QByteArray &name, const folder &to)
{
    const open_file source(from, name, O_RDONLY | O_NONBLOCK);
    struct stat found = {};
    if (fstat(source.descriptor, &found) != 0 || !S_ISREG(found.st_mode))
        return; // it was a file a moment ago
    const half_file half(to);
    {
        const open_file target(to, half_name, O_WRONLY | O_CREAT | O_EXCL);
        copy_bytes(source, target);
        const timespec times[2] = {found.st_atim, found.st_mtim};
        futimens(target.descriptor, times); // what the modes and times cannot be given, the copy does without
        if (fchmod(target.descriptor, found.st_mode & 0777) != 0 && errno != EPERM)
            fail(errno, target.path);
        if (fsync(target.descriptor) != 0)
            fail(errno, target.path);
    }
    if (renameat(to.descriptor, half_name, to.descriptor, name.constData()) != 0)
        fail(errno, to.path_of(name));
}

void need_folder(const folder &where, const QByteArray &name)
{
    const int code = mkdirat(where.descriptor, name.constData(), 0755) == 0 ? 0 : errno;
    if (code != 0 && !(code == EEXIST && kind_of(where, name) == kind::folder))
        fail(code, where.path_of(name));
}

void copy_entries(const folder &from, const folder &to, const folder &root)
{
    if (from.is_same(root) || from.is_same(to))
        fail(EINVAL, from.path); // it would find its own copy for ever
    for (const QByteArray &name : from.entries()) {
        switch (kind_of(from, name)) {
        case kind::folder:
            need_folder(to, name);
            copy_entries(folder(from, name), folder(to, name), root);
            break;
        case kind::file:
            if (name != half_name)
                copy_file(from, name, to);
            break;
        default:
            break;
        }
    }
    if (fsync(to.descriptor) != 0 && errno != EINVAL) // some file systems have no such call
        fail(errno, to.path);
}

}

void copy_folder(const QByteArray &path, const QByteArray &into)
{
    const folder from(path);
    const folder root(into);
    const QByteArray name = from.path.mid(from.path.lastIndexOf('/') + 1);
    if (from.is_same(root))
        fail(EINVAL, from.path);
    need_folder(root, name);
    copy_entries(from, folder(root, name), root);
    if (fsync(root.descriptor) != 0 && errno != EINVAL)
        fail(errno, root.path);
}

}
