#include "platform/text_file.h"
#include "platform/outside_effects.h"
#include "platform/run_time_error.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace {

[[noreturn]] void fail(int code, const QString &path)
{
    const quint32 number = code == ENOENT ? 53 : code == ENOSPC || code == EFBIG || code == EDQUOT ? 61 : 70;
    const char *words = number == 53 ? "File not found" : number == 61 ? "Disk full" : "Permission denied";
    throw run_time_error{number, QString::fromLatin1(words) + QStringLiteral(": ") + path};
}

class open_file {
public:
    open_file(const QByteArray &path, int flags) : descriptor(::open(path.constData(), flags | O_CLOEXEC, 0644)) {}
    ~open_file()
    {
        if (descriptor >= 0)
            ::close(descriptor);
    }
    open_file(const open_file &) = delete;
    open_file &operator=(const open_file &) = delete;

    bool write_all(const QByteArray &bytes) const
    {
        for (qsizetype done = 0; done < bytes.size();) {
            const ssize_t written = ::write(descriptor, bytes.constData() + done, size_t(bytes.size() - done));
            if (written < 0 && errno == EINTR)
                continue;
            if (written < 0)
                return false;
            done += written;
        }
        return true;
    }

    const int descriptor;
};

}

bool FileExists(const QString &path)
{
    return QFileInfo(path).isFile();
}

bool CanRead(const QString &path)
{
    return FileExists(path) && QFileInfo(path).isReadable();
}

QString ReadAll(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        fail(QFileInfo::exists(path) ? EACCES : ENOENT, path);
    return QString::fromUtf8(file.readAll());
}

void Write(const QString &path, const QString &text)
{
    before_outside_effect();
    const QByteArray target = QFile::encodeName(path);
    const QByteArray beside = target + ".tmp";
    {
        const open_file file(beside, O_WRONLY | O_CREAT | O_TRUNC);
        if (file.descriptor < 0)
            fail(errno, path);
        if (!file.write_all(text.toUtf8()) || ::fsync(file.descriptor) != 0) {
            const int code = errno;
            ::unlink(beside.constData());
            fail(code, path);
        }
    }
    if (::rename(beside.constData(), target.constData()) != 0)
        fail(errno, path);
}

void Append(const QString &path, const QByteArray &bytes)
{
    before_outside_effect();
    const open_file file(QFile::encodeName(path), O_WRONLY | O_CREAT | O_APPEND);
    if (file.descriptor < 0 || !file.write_all(bytes))
        fail(errno, path);
}
