#include "platform/real/mail/mail_file.h"
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace maildir {

namespace {

constexpr qint64 first_read = 32 * 1024; // most mails fit whole
constexpr qint64 longest_header = 1024 * 1024;

struct mail_file {
    // Not blocking: a pipe that somebody put there must not hang us.
    explicit mail_file(const QByteArray &path) : number(open(path.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC))
    {
        struct stat facts {};
        failure = number < 0 ? errno : 0;
        if (number >= 0 && fstat(number, &facts) == 0 && S_ISREG(facts.st_mode))
            size = facts.st_size;
    }
    ~mail_file()
    {
        if (number >= 0)
            close(number);
    }
    mail_file(const mail_file &) = delete;
    mail_file &operator=(const mail_file &) = delete;
    int number;
    qint64 size = -1; // -1: nothing that can be read
    int failure = 0;  // of opening
};

// Makes bytes as long as wanted, or as long as the file is.
bool read_up_to(const mail_file &file, QByteArray &bytes, qint64 wanted, int &failure)
{
    qsizetype have = bytes.size();
    bytes.resize(qsizetype(wanted));
    while (have < wanted) {
        const ssize_t got = read(file.number, bytes.data() + have, size_t(wanted - have));
        if (got < 0) {
            failure = errno;
            return false;
        }
        if (got == 0)
            break;
        have += got;
    }
    bytes.truncate(have);
    return true;
}

bool header_ends_in(const QByteArray &bytes)
{
    return bytes.contains("\n\n") || bytes.contains("\n\r\n");
}

}

std::optional<file_bytes> read_head_bytes(const QByteArray &path, int &failure)
{
    const mail_file file(path);
    failure = file.failure;
    QByteArray bytes;
    if (file.size < 0 || !read_up_to(file, bytes, qMin(file.size, first_read), failure))
        return std::nullopt;
    if (bytes.size() < file.size && !header_ends_in(bytes))
        if (!read_up_to(file, bytes, qMin(file.size, longest_header), failure))
            return std::nullopt;
    const bool whole = bytes.size() >= file.size;
    return file_bytes{std::move(bytes), whole};
}

std::optional<QByteArray> read_whole(const QByteArray &path, int &failure)
{
    const mail_file file(path);
    failure = file.failure;
    QByteArray bytes;
    if (file.size < 0 || !read_up_to(file, bytes, qMin(file.size, longest_mail), failure))
        return std::nullopt;
    return bytes;
}

}
