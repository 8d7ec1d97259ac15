#include "platform/real/mail/maildir_listing.h"
#include <QFile>
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <dirent.h>
#include <sys/stat.h>

namespace maildir {

namespace {

constexpr int granularity = 2;                       // seconds that the coarsest file system's clock may stand
constexpr qint64 first_believable_time = 100000000;  // 1973; smaller heads are running numbers
constexpr qint64 last_believable_time = 99999999999; // beyond the store's dates

struct folder_reader {
    explicit folder_reader(const QByteArray &path) : folder(opendir(path.constData())) {}
    ~folder_reader()
    {
        if (folder)
            closedir(folder);
    }
    folder_reader(const folder_reader &) = delete;
    folder_reader &operator=(const folder_reader &) = delete;
    DIR *folder;
};

qint64 file_time(const QByteArray &path)
{
    struct stat facts {};
    return stat(path.constData(), &facts) == 0 ? qint64(facts.st_mtim.tv_sec) : 0;
}

void add_mails(const QByteArray &folder, bool is_new, std::vector<listed_mail> &mails)
{
    const folder_reader reader(folder);
    if (!reader.folder)
        throw_file_failure("The mail folder cannot be read", folder, errno);
    while (const dirent *file = readdir(reader.folder)) {
        if (file->d_name[0] == '.' || file->d_type == DT_DIR)
            continue;
        listed_mail mail;
        mail.name = QByteArray(file->d_name);
        mail.base_length = qint32(base_name(mail.name).size());
        mail.delivered = delivery_time_in(mail.name);
        if (mail.delivered == 0)
            mail.delivered = file_time(folder + '/' + mail.name);
        mail.is_new = is_new;
        mails.push_back(std::move(mail));
    }
}

int compared(QByteArrayView a, QByteArrayView b)
{
    const int order = memcmp(a.data(), b.data(), size_t(qMin(a.size(), b.size())));
    return order != 0 ? order : int(a.size() - b.size());
}

bool same_mail(const listed_mail &a, const listed_mail &b)
{
    return a.delivered == b.delivered && compared(a.base(), b.base()) == 0;
}

bool stands_before(const listed_mail &a, const listed_mail &b)
{
    if (a.delivered != b.delivered)
        return a.delivered < b.delivered;
    const int order = compared(a.base(), b.base());
    return order != 0 ? order < 0 : a.is_new < b.is_new;
}

// Both are in the same order, so one pass over the two finds what is still there.
void keep_what_was_known(const listing &before, listing &present)
{
    present.verdict_key = before.verdict_key;
    auto old = before.mails.begin();
    for (listed_mail &mail : present.mails) {
        while (old != before.mails.end() && !same_mail(*old, mail) && stands_before(*old, mail))
            ++old;
        if (old == before.mails.end())
            return;
        if (!same_mail(*old, mail))
            continue;
        mail.to = old->to;
        mail.subject = old->subject;
        mail.head_known = old->head_known;
        mail.told = old->told;
        mail.answer = old->answer;
    }
}

void make_folder(const QByteArray &path)
{
    if (mkdir(path.constData(), 0700) != 0 && errno != EEXIST)
        throw_file_failure("The mail folder cannot be made", path, errno);
}

quint32 number_of_failure(int failure)
{
    switch (failure) {
    case ENOENT:
        return 53;
    case ENOSPC:
    case EDQUOT:
        return 61;
    case EACCES:
    case EPERM:
    case EROFS:
        return 70;
    case ENOTDIR:
        return 76;
    default:
        return 75;
    }
}

}

QByteArrayView base_name(QByteArrayView file_name)
{
    const qsizetype colon = file_name.lastIndexOf(':');
    return colon < 0 ? file_name : file_name.first(colon);
}

qint64 delivery_time_in(QByteArrayView file_name)
{
    qint64 seconds = 0;
    for (const char letter : file_name) {
        if (letter < '0' || letter > '9')
            break;
        seconds = seconds * 10 + (letter - '0');
        if (seconds > last_believable_time)
            return 0;
    }
    return seconds >= first_believable_time ? seconds : 0;
}

folder_memory::folder_stamp folder_memory::stamp_of(const QByteArray &folder)
{
    struct stat facts {};
    const time_t seen = time(nullptr);
    if (stat(folder.constData(), &facts) != 0)
        throw_file_failure("The mail folder cannot be read", folder, errno);
    return {qint64(facts.st_mtim.tv_sec), qint64(facts.st_mtim.tv_nsec), seen - facts.st_mtim.tv_sec > granularity};
}

bool folder_memory::same_moment(const folder_stamp &a, const folder_stamp &b)
{
    return a.settled && b.settled && a.seconds == b.seconds && a.nanoseconds == b.nanoseconds;
}

std::shared_ptr<listing> folder_memory::current()
{
    const QByteArray new_path = path + "/new", cur_path = path + "/cur";
    const folder_stamp new_stamp = stamp_of(new_path), cur_stamp = stamp_of(cur_path);
    if (last && same_moment(new_stamp, last_new) && same_moment(cur_stamp, last_cur))
        return last;
    auto present = std::make_shared<listing>();
    if (last)
        present->mails.reserve(last->mails.size());
    // "new" first: a mail that another program takes from there to "cur" meanwhile is met twice, never missed.
    add_mails(new_path, true, present->mails);
    add_mails(cur_path, false, present->mails);
    std::sort(present->mails.begin(), present->mails.end(), stands_before);
    present->mails.erase(std::unique(present->mails.begin(), present->mails.end(), same_mail), present->mails.end());
    if (last)
        keep_what_was_known(*last, *present);
    last = present;
    last_new = new_stamp;
    last_cur = cur_stamp;
    return present;
}

void make_maildir(const QByteArray &path)
{
    make_folder(path);
    for (const char *part : {"/cur", "/new", "/tmp"})
        make_folder(path + part);
}

run_time_error file_failure(const char *what, const QByteArray &path, int failure)
{
    return {number_of_failure(failure), QString::fromLatin1(what) + QStringLiteral(" (") + QFile::decodeName(path) +
                                            QStringLiteral("): ") + QString::fromLocal8Bit(strerror(failure))};
}

void throw_file_failure(const char *what, const QByteArray &path, int failure)
{
    throw file_failure(what, path, failure);
}

}
