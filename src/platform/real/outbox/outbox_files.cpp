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

// Straight from the folder: no file is looked at for its name's sake. All of them or nothing: whoever takes a part for
// the whole misses mails. No folder is an empty one.
std::optional<QStringList> names_in(const QString &path)
{
    QStringList names;
    const std::unique_ptr<DIR, close_folder> folder(opendir(QFile::encodeName(path).constData()));
    if (!folder)
        return errno == ENOENT ? std::optional(names) : std::nullopt;
    errno = 0;
    while (const dirent *entry = readdir(folder.get())) {
        names.append(QFile::decodeName(entry->d_name));
        errno = 0;
    }
    return errno == 0 ? std::optional(names) : std::nullopt;
}

file_mark mark_by(const struct stat &facts)
{
    constexpr qint64 nanoseconds = 1000000000;
    return {facts.st_ino, facts.st_size, facts.st_mtim.tv_sec * nanoseconds + facts.st_mtim.tv_nsec};
}

QStringList ids_in(const QStringList &names)
{
    QStringList states;
    for (const QString &name : names)
        if (name.endsWith(state_kind))
            states.append(name.chopped(state_kind.size()));
    std::sort(states.begin(), states.end());
    return states;
}

// As many bytes as the file is long, or a failure.
file_content content_of(int file)
{
    struct stat facts {};
    if (fstat(file, &facts) != 0)
        return {{}, errno};
    if (!S_ISREG(facts.st_mode))
        return {{}, S_ISDIR(facts.st_mode) ? EISDIR : EINVAL};
    QByteArray bytes(facts.st_size, Qt::Uninitialized);
    qsizetype come = 0;
    while (come < bytes.size()) {
        const ssize_t more = read(file, bytes.data() + come, size_t(bytes.size() - come));
        if (more < 0 && errno == EINTR)
            continue;
        if (more <= 0)
            return {{}, more < 0 ? errno : EIO};
        come += more;
    }
    return {bytes, 0, mark_by(facts)};
}

// In three calls; there are as many files as mails.
file_content whole_file(const QString &path)
{
    const int file = open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (file < 0)
        return {{}, errno};
    const file_content content = content_of(file);
    close(file);
    return content;
}

bool is_gone(const QString &path)
{
    return unlink(QFile::encodeName(path).constData()) == 0 || errno == ENOENT;
}

}

std::optional<QStringList> outbox_files::ids() const
{
    const std::optional<QStringList> names = names_in(path);
    return names ? std::optional(ids_in(*names)) : std::nullopt;
}

file_mark outbox_files::mark_of(const QString &id) const
{
    struct stat facts {};
    return stat(QFile::encodeName(of(id, state_kind)).constData(), &facts) == 0 ? mark_by(facts) : file_mark();
}

state_reading outbox_files::read(const QString &id) const
{
    const file_content state = whole_file(of(id, state_kind));
    if (state.failure != 0)
        return {std::nullopt, state.failure == ENOENT};
    if (const auto known = read_state_bytes(id, state.bytes))
        return {known, true, state.mark};
    const file_content mail = eml(id);
    if (mail.failure != 0 && mail.failure != ENOENT)
        return {std::nullopt, false};
    return {record_of_damaged(id, mail.bytes), true, state.mark};
}

file_content outbox_files::eml(const QString &id) const
{
    return whole_file(of(id, mail_kind_of_file));
}

void outbox_files::write(const record &mail, const QByteArray &eml) const
{
    write_durable_pair(path, {mail.id + mail_kind_of_file, eml}, {mail.id + state_kind, state_bytes(mail)});
}

void outbox_files::replace_states(const std::vector<record> &mails) const
{
    std::vector<named_bytes> states;
    for (const record &mail : mails)
        states.push_back({mail.id + state_kind, state_bytes(mail)});
    replace_all_durably(path, states);
}

bool outbox_files::remove(const QString &id) const
{
    const bool counts_no_more = is_gone(of(id, state_kind));
    return counts_no_more && (is_gone(of(id, mail_kind_of_file)), true);
}

std::optional<QStringList> outbox_files::sweep() const
{
    const std::optional<QStringList> names = names_in(path);
    if (!names)
        return std::nullopt;
    const QSet<QString> all(names->begin(), names->end());
    for (const QString &name : *names) {
        const bool is_left_alone =
            name.endsWith(mail_kind_of_file) && !all.contains(name.chopped(mail_kind_of_file.size()) + state_kind);
        if (name.endsWith(half_kind) || is_left_alone)
            unlink(QFile::encodeName(path + u'/' + name).constData());
    }
    return ids_in(*names);
}

}
