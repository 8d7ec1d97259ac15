#include "platform/real/outbox/outbox_files.h"
#include "platform/real/durable_file.h"
#include <QFile>
#include <QSet>
#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace outbox {

namespace {

constexpr QLatin1String mail_kind_of_file(".eml");
constexpr QLatin1String state_kind(".json");
constexpr QLatin1String half_kind(".tmp");

struct close_folder {
    void operator()(DIR *folder) const { closedir(folder); }
};

// Straight from the folder: no file is looked at for its name's sake.
QStringList names_in(const QString &path)
{
    QStringList names;
    const std::unique_ptr<DIR, close_folder> folder(opendir(QFile::encodeName(path).constData()));
    while (const dirent *entry = folder ? readdir(folder.get()) : nullptr)
        names.append(QFile::decodeName(entry->d_name));
    return names;
}

// In three calls; there are as many files as mails. Nothing when there is no such file.
std::optional<QByteArray> whole_file(const QString &path)
{
    const int file = open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return errno == ENOENT ? std::nullopt : std::optional(QByteArray());
    struct stat facts {};
    QByteArray bytes;
    if (fstat(file, &facts) == 0)
        bytes.resize(facts.st_size);
    qsizetype come = 0;
    while (come < bytes.size()) {
        const ssize_t more = read(file, bytes.data() + come, size_t(bytes.size() - come));
        if (more < 0 && errno == EINTR)
            continue;
        if (more <= 0)
            break;
        come += more;
    }
    close(file);
    bytes.truncate(come);
    return bytes;
}

bool is_gone(const QString &path)
{
    return unlink(QFile::encodeName(path).constData()) == 0 || errno == ENOENT;
}

}

QStringList outbox_files::ids() const
{
    QSet<QString> mails;
    QStringList states;
    for (const QString &name : names_in(path)) {
        if (name.endsWith(mail_kind_of_file))
            mails.insert(name.chopped(mail_kind_of_file.size()));
        else if (name.endsWith(state_kind))
            states.append(name.chopped(state_kind.size()));
    }
    states.removeIf([&mails](const QString &id) { return !mails.contains(id); });
    std::sort(states.begin(), states.end());
    return states;
}

file_mark outbox_files::mark_of(const QString &id) const
{
    struct stat facts {};
    if (stat(QFile::encodeName(of(id, state_kind)).constData(), &facts) != 0)
        return {};
    constexpr qint64 nanoseconds = 1000000000;
    return {facts.st_ino, facts.st_size, facts.st_mtim.tv_sec * nanoseconds + facts.st_mtim.tv_nsec};
}

std::optional<record> outbox_files::read(const QString &id) const
{
    const std::optional<QByteArray> state = whole_file(of(id, state_kind));
    if (!state)
        return std::nullopt;
    const auto known = read_state_bytes(id, *state);
    return known ? known : record_of_damaged(id, eml(id));
}

QByteArray outbox_files::eml(const QString &id) const
{
    return whole_file(of(id, mail_kind_of_file)).value_or(QByteArray());
}

void outbox_files::write(const record &mail, const QByteArray &eml) const
{
    write_durable_pair(path, {mail.id + mail_kind_of_file, eml}, {mail.id + state_kind, state_bytes(mail)});
}

void outbox_files::replace_state(const record &mail) const
{
    replace_durably(path, {mail.id + state_kind, state_bytes(mail)});
}

bool outbox_files::remove(const QString &id) const
{
    const bool counts_no_more = is_gone(of(id, state_kind));
    return counts_no_more && (is_gone(of(id, mail_kind_of_file)), true);
}

void outbox_files::sweep() const
{
    const QStringList names = names_in(path);
    const QSet<QString> all(names.begin(), names.end());
    for (const QString &name : names) {
        const bool is_mail = name.endsWith(mail_kind_of_file);
        const bool is_state = name.endsWith(state_kind);
        const QString other = is_mail ? name.chopped(mail_kind_of_file.size()) + state_kind
                                      : name.chopped(state_kind.size()) + mail_kind_of_file;
        if (name.endsWith(half_kind) || ((is_mail || is_state) && !all.contains(other)))
            unlink(QFile::encodeName(path + u'/' + name).constData());
    }
}

}
