#include "platform/folders.h"
#include "platform/outside_effects.h"
#include "platform/real/folder_names.h"
#include "platform/real/folder_tree.h"

#include <QDir>
#include <QFileInfo>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using folder_names::bytes_of;
using folder_names::text_of;

namespace {

// The folder that the path stands in, on disk when this returns.
void sync_parent(const QString &path)
{
    const int parent = ::open(bytes_of(GetParentFolderName(path)).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (parent < 0)
        return; // it may be written to and not read
    const int failure = ::fsync(parent) == 0 || errno == EINVAL ? 0 : errno;
    ::close(parent);
    if (failure != 0)
        folder_tree::fail(failure, bytes_of(path));
}

}

bool FolderExists(const QString &path)
{
    return folder_tree::kind_of(bytes_of(path)) == folder_tree::kind::folder;
}

bool EntryExists(const QString &path)
{
    const QFileInfo found(path);
    return found.exists() || found.isSymLink();
}

bool IsPlainFile(const QString &path)
{
    const QFileInfo found(path);
    return found.isFile() && !found.isSymLink();
}

QDateTime DateLastModified(const QString &path)
{
    return QFileInfo(path).lastModified();
}

QString GetParentFolderName(const QString &path)
{
    const QString clean = QDir::cleanPath(path);
    const qsizetype slash = clean.lastIndexOf(u'/');
    if (slash < 0 || clean == u"/")
        return {};
    return slash == 0 ? QStringLiteral("/") : clean.left(slash);
}

QString GetDriveName(const QString &path)
{
    return path.startsWith(u'/') && !path.contains(QChar(0)) ? QStringLiteral("/") : QString();
}

QString GetAbsolutePathName(const QString &path)
{
    QString there = QDir::cleanPath(QDir::current().absoluteFilePath(path));
    QString missing;
    while (!there.isEmpty()) {
        const QString real = QFileInfo(there).canonicalFilePath();
        if (!real.isEmpty())
            return QDir::cleanPath(real + missing);
        missing = there.mid(there.lastIndexOf(u'/')) + missing;
        there = GetParentFolderName(there);
    }
    return missing;
}

QStringList SubFolders(const QString &path)
{
    const folder_tree::folder of(bytes_of(path));
    QStringList names;
    for (const QByteArray &name : of.entries())
        if (folder_tree::kind_of(of, name) == folder_tree::kind::folder)
            names += text_of(name);
    return names;
}

QStringList AllEntries(const QString &path)
{
    QStringList names;
    for (const QByteArray &name : folder_tree::folder(bytes_of(path)).entries())
        names += text_of(name);
    return names;
}

void CreateFolder(const QString &path)
{
    before_outside_effect();
    const QByteArray name = bytes_of(path);
    if (::mkdir(name.constData(), 0755) != 0)
        folder_tree::fail(errno, name);
    sync_parent(path);
}

void DeleteFolder(const QString &path)
{
    before_outside_effect();
    folder_tree::remove_folder(bytes_of(path));
    sync_parent(path);
}

void DeleteFile(const QString &path)
{
    before_outside_effect();
    const QByteArray name = bytes_of(path);
    if (::unlink(name.constData()) != 0)
        folder_tree::fail(errno == EISDIR ? EACCES : errno, name);
    sync_parent(path);
}

void Move(const QString &path, const QString &to)
{
    before_outside_effect();
    const QByteArray from_name = bytes_of(path);
    const QByteArray to_name = bytes_of(to);
    struct stat found = {};
    if (::lstat(to_name.constData(), &found) == 0)
        folder_tree::fail(EEXIST, to_name);
    if (::rename(from_name.constData(), to_name.constData()) != 0)
        folder_tree::fail(errno, from_name);
    sync_parent(path);
    if (GetParentFolderName(path) != GetParentFolderName(to))
        sync_parent(to);
}

void CopyFolder(const QString &path, const QString &into)
{
    before_outside_effect();
    folder_tree::copy_folder(bytes_of(path), bytes_of(into));
}
