#include "platform/app_folder.h"
#include "platform/run_time_error.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace {

struct folder_state {
    QString folder;
    int lock = -1;
} the_folder;

bool copy_folder(const QString &from, const QString &to)
{
    bool whole = QDir().mkpath(to);
    const auto entries = QDir(from).entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::NoSymLinks);
    for (const QFileInfo &entry : entries) {
        const QString target = to + u'/' + entry.fileName();
        if (entry.isDir())
            whole = whole && copy_folder(entry.filePath(), target);
        else if (!entry.isExecutable())
            whole = whole && QFile::copy(entry.filePath(), target) &&
                    QFile::setPermissions(target, QFile::permissions(target) | QFile::WriteOwner);
    }
    return whole;
}

QString find_folder()
{
    const QString installed = QCoreApplication::applicationDirPath();
    if (::access(QFile::encodeName(installed).constData(), W_OK) == 0)
        return installed;
    const QString own =
        QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/tessaly");
    if (!QDir(own).exists())
        seed_folder(installed, own);
    return own;
}

}

void seed_folder(const QString &from, const QString &to)
{
    const QString half = to + QStringLiteral(".new"); // what a kill or a full disk left of an earlier try goes
    QDir(half).removeRecursively();
    if (!copy_folder(from, half) || !QDir().rename(half, to))
        QDir(half).removeRecursively();
}

QString app_folder()
{
    if (the_folder.folder.isEmpty())
        the_folder.folder = find_folder();
    return the_folder.folder;
}

void set_app_folder(const QString &folder)
{
    unlock_app_folder();
    the_folder.folder = folder.isEmpty() ? folder : QDir(folder).absolutePath();
}

QString app_path(QStringView tail)
{
    return app_folder() + tail.toString().replace(u'\\', u'/');
}

bool lock_app_folder()
{
    if (the_folder.lock >= 0)
        return true;
    const QString path = app_path(u"\\tessaly.lock");
    const int descriptor = ::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
    if (descriptor < 0 && (errno == ENOENT || errno == ENOTDIR))
        throw run_time_error{76, QStringLiteral("Path not found: ") + app_folder()};
    if (descriptor < 0)
        throw run_time_error{70, QStringLiteral("Permission denied: ") + path};
    if (::flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
        const int failure = errno;
        ::close(descriptor);
        if (failure == EWOULDBLOCK)
            return false;
        throw run_time_error{75, QStringLiteral("Path/File access error: ") + path + QStringLiteral(": ") +
                                     QString::fromLocal8Bit(strerror(failure))};
    }
    the_folder.lock = descriptor;
    return true;
}

void unlock_app_folder()
{
    if (the_folder.lock >= 0)
        ::close(the_folder.lock);
    the_folder.lock = -1;
}
