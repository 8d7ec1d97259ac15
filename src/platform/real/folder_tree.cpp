#include "platform/real/folder_tree.h"
#include "platform/real/folder_names.h"
#include "platform/run_time_error.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace folder_tree {

namespace {

constexpr int deepest = 200; // each level holds descriptors open
constexpr int as_folder = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

// A path that ends in a slash would be followed through a link.
QByteArray without_slashes(QByteArray path)
{
    while (path.size() > 1 && path.endsWith('/'))
        path.chop(1);
    return path;
}

kind kind_of_mode(mode_t mode)
{
    return S_ISDIR(mode) ? kind::folder : S_ISREG(mode) ? kind::file : kind::other;
}

void remove_entries(const folder &of)
{
    for (const QByteArray &name : of.entries()) {
        const bool is_folder = kind_of(of, name) == kind::folder;
        if (is_folder)
            remove_entries(folder(of, name));
        if (unlinkat(of.descriptor, name.constData(), is_folder ? AT_REMOVEDIR : 0) != 0)
            fail(errno, of.path_of(name));
    }
}

}

void fail(int code, const QByteArray &path)
{
    const auto failure = [&](quint32 number, const char *words) {
        return run_time_error{number, QString::fromLatin1(words) + QStringLiteral(": ") + folder_names::shown(path)};
    };
    switch (code) {
    case ENOENT:
    case ENOTDIR:
    case ELOOP:
        throw failure(76, "Path not found");
    case EEXIST:
    case ENOTEMPTY:
        throw failure(58, "File already exists");
    case EACCES:
    case EPERM:
    case EROFS:
        throw failure(70, "Permission denied");
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        throw failure(61, "Disk full");
    default:
        run_time_error other = failure(75, "Path/File access error");
        other.description += QStringLiteral(": ") + QString::fromLocal8Bit(strerror(code));
        throw run_time_error(other);
    }
}

folder::folder(const QByteArray &where)
    : path(without_slashes(where)), depth(0), descriptor(::open(path.constData(), as_folder))
{
    if (descriptor < 0)
        fail(errno, path);
}

folder::folder(const folder &parent, const QByteArray &name)
    : path(parent.path_of(name)),
      depth(parent.depth + 1),
      descriptor(depth > deepest ? -1 : ::openat(parent.descriptor, name.constData(), as_folder))
{
    if (descriptor < 0)
        fail(depth > deepest ? ENAMETOOLONG : errno, path);
}

folder::~folder()
{
    ::close(descriptor);
}

QByteArrayList folder::entries() const
{
    const int own = ::openat(descriptor, ".", as_folder); // the stream closes what it is given
    DIR *stream = own < 0 ? nullptr : fdopendir(own);
    if (!stream) {
        const int code = errno;
        if (own >= 0)
            ::close(own);
        fail(code, path);
    }
    QByteArrayList names;
    errno = 0;
    while (const dirent *entry = readdir(stream))
        names += entry->d_name;
    const int code = errno;
    closedir(stream);
    if (code != 0)
        fail(code, path);
    names.removeOne(".");
    names.removeOne("..");
    std::sort(names.begin(), names.end());
    return names;
}

bool folder::is_same(const folder &other) const
{
    struct stat one = {};
    struct stat two = {};
    return fstat(descriptor, &one) == 0 && fstat(other.descriptor, &two) == 0 && one.st_dev == two.st_dev &&
           one.st_ino == two.st_ino;
}

kind kind_of(const folder &where, const QByteArray &name)
{
    struct stat found = {};
    if (fstatat(where.descriptor, name.constData(), &found, AT_SYMLINK_NOFOLLOW) != 0)
        return kind::absent;
    return kind_of_mode(found.st_mode);
}

kind kind_of(const QByteArray &path)
{
    struct stat found = {};
    if (path.isEmpty() || lstat(without_slashes(path).constData(), &found) != 0)
        return kind::absent;
    return kind_of_mode(found.st_mode);
}

void remove_folder(const QByteArray &path)
{
    const QByteArray clean = without_slashes(path);
    remove_entries(folder(clean));
    if (::rmdir(clean.constData()) != 0)
        fail(errno, clean);
}

}
