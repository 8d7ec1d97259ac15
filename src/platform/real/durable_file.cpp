#include "platform/real/durable_file.h"
#include <QByteArrayList>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <cstdio>
#include <deque>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

[[noreturn]] void durable_failure(int failure, const QByteArray &path)
{
    const bool full = failure == ENOSPC || failure == EDQUOT || failure == EFBIG;
    const QString words = full ? QStringLiteral("Disk full: ") : QStringLiteral("Permission denied: ");
    throw run_time_error{full ? 61u : 70u, words + QFile::decodeName(path)};
}

int write_all(int file, const QByteArray &bytes)
{
    for (qsizetype done = 0; done < bytes.size();) {
        const ssize_t written = write(file, bytes.constData() + done, size_t(bytes.size() - done));
        if (written < 0 && errno != EINTR)
            return errno;
        done += qMax<ssize_t>(written, 0);
    }
    return 0;
}

// A file that must not be there yet. Writing and waiting for the disk are two steps, so that several go to it together.
// 0, or the number of the failure.
class half_file {
public:
    explicit half_file(const QByteArray &path)
        : file(open(path.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600)), failure(file < 0 ? errno : 0)
    {
    }
    ~half_file()
    {
        if (file >= 0)
            close(file);
    }
    half_file(const half_file &) = delete;
    half_file &operator=(const half_file &) = delete;

    int write(const QByteArray &bytes)
    {
        if (failure == 0)
            failure = write_all(file, bytes);
        if (failure == 0) // only a beginning, and where it is not known the sync does all
            sync_file_range(file, 0, 0, SYNC_FILE_RANGE_WRITE);
        return failure;
    }
    int sync()
    {
        if (failure == 0 && fsync(file) != 0)
            failure = errno;
        return failure;
    }

private:
    int file, failure;
};

// All on their way to the disk before the first one is waited for.
int write_all_halves(const QByteArrayList &paths, const std::vector<named_bytes> &files)
{
    std::deque<half_file> halves;
    int failure = 0;
    for (size_t number = 0; failure == 0 && number < files.size(); ++number)
        failure = halves.emplace_back(paths[qsizetype(number)] + ".tmp").write(files[number].bytes);
    for (half_file &one : halves)
        if (failure == 0)
            failure = one.sync();
    return failure;
}

int write_halves(const QByteArray &first, const QByteArray &first_bytes, const QByteArray &second,
                 const QByteArray &second_bytes)
{
    half_file one(first), other(second);
    int failure = one.write(first_bytes);
    if (failure == 0)
        failure = other.write(second_bytes);
    if (failure == 0)
        failure = one.sync();
    return failure != 0 ? failure : other.sync();
}

// Some file systems have no such call.
int sync_of_folder(const QByteArray &path)
{
    const int folder = open(path.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0)
        return errno;
    const int failure = fsync(folder) == 0 || errno == EINVAL ? 0 : errno;
    close(folder);
    return failure;
}

int rename_both(const QByteArray &first, const QByteArray &second)
{
    for (const QByteArray &path : {first, second})
        if (rename((path + ".tmp").constData(), path.constData()) != 0)
            return errno;
    return 0;
}

void remove_pair(const QByteArray &first, const QByteArray &second)
{
    for (const QByteArray &path : {second, first}) {
        unlink(path.constData());
        unlink((path + ".tmp").constData());
    }
}

}

void make_durable_folder(const QString &path)
{
    if (QDir(path).exists())
        return;
    const QByteArray folder = QFile::encodeName(path);
    if (mkdir(folder.constData(), 0700) != 0)
        durable_failure(errno, folder);
    const int failure = sync_of_folder(QFile::encodeName(QFileInfo(path).path()));
    if (failure != 0)
        durable_failure(failure, folder);
}

void write_durable_pair(const QString &folder, const named_bytes &first, const named_bytes &second)
{
    const QByteArray base = QFile::encodeName(folder) + '/';
    const QByteArray first_path = base + QFile::encodeName(first.name);
    const QByteArray second_path = base + QFile::encodeName(second.name);
    int failure = write_halves(first_path + ".tmp", first.bytes, second_path + ".tmp", second.bytes);
    if (failure == 0)
        failure = rename_both(first_path, second_path);
    if (failure == 0)
        failure = sync_of_folder(base);
    if (failure != 0) {
        remove_pair(first_path, second_path);
        durable_failure(failure, base);
    }
}

void replace_durably(const QString &folder, const named_bytes &file)
{
    replace_all_durably(folder, {file});
}

void replace_all_durably(const QString &folder, const std::vector<named_bytes> &files)
{
    if (files.empty())
        return;
    const QByteArray base = QFile::encodeName(folder) + '/';
    QByteArrayList paths;
    for (const named_bytes &file : files)
        paths.append(base + QFile::encodeName(file.name));
    for (const QByteArray &path : paths)
        unlink((path + ".tmp").constData()); // of a kill
    int failure = write_all_halves(paths, files);
    for (qsizetype number = 0; failure == 0 && number < paths.size(); ++number)
        if (rename((paths[number] + ".tmp").constData(), paths[number].constData()) != 0)
            failure = errno;
    if (failure == 0)
        failure = sync_of_folder(base);
    if (failure == 0)
        return;
    for (const QByteArray &path : paths)
        unlink((path + ".tmp").constData());
    durable_failure(failure, base);
}

void sync_folder(const QString &path)
{
    const QByteArray folder = QFile::encodeName(path);
    const int failure = sync_of_folder(folder);
    if (failure != 0)
        durable_failure(failure, folder);
}

bool is_folder_synced(const QString &path)
{
    return sync_of_folder(QFile::encodeName(path)) == 0;
}

void append_to_file(const QString &path, const QByteArray &bytes)
{
    const QByteArray name = QFile::encodeName(path);
    const int file = open(name.constData(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    const int failure = file < 0 ? errno : write_all(file, bytes);
    if (file >= 0)
        close(file);
    if (failure != 0)
        durable_failure(failure, name);
}
