#include "platform/real/mail/maildir_moves.h"
#include "platform/outside_effects.h"
#include "platform/real/mail/maildir_listing.h"
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace maildir {

namespace {

constexpr int most_names_tried = 100;

// A name without flags says so with an empty list of them, as every mail in "cur" must.
QByteArray name_for_cur(const QByteArray &name)
{
    return name.contains(':') ? name : name + ":2,";
}

// "1700000000.a.host:2,S" becomes "1700000000.a.host_3:2,S".
QByteArray another_name(const QByteArray &name, int attempt)
{
    const qsizetype length = base_name(name).size();
    return name.first(length) + '_' + QByteArray::number(attempt) + name.sliced(length);
}

// 0, or the number of the failure. Never over a file that is there already.
int rename_anew(const QByteArray &from, const QByteArray &to)
{
    if (renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) == 0)
        return 0;
    if (errno != EINVAL && errno != ENOSYS)
        return errno;
    struct stat facts {};
    if (lstat(to.constData(), &facts) == 0)
        return EEXIST;
    return rename(from.constData(), to.constData()) == 0 ? 0 : errno;
}

int rename_under_free_name(const QByteArray &from, const QByteArray &folder, const QByteArray &name)
{
    int failure = rename_anew(from, folder + name);
    for (int attempt = 1; failure == EEXIST && attempt <= most_names_tried; ++attempt)
        failure = rename_anew(from, folder + another_name(name, attempt));
    return failure;
}

// Where the mail is now, when another program has changed its flags meanwhile; "" when it is gone.
QByteArray present_path(const QByteArray &from_folder, const QByteArray &name)
{
    const QByteArrayView base = base_name(name);
    for (const char *part : {"/cur/", "/new/"}) {
        const QByteArray path = from_folder + part;
        DIR *reader = opendir(path.constData());
        if (!reader)
            continue;
        QByteArray found;
        while (const dirent *file = readdir(reader))
            if (base_name(QByteArrayView(file->d_name)) == base)
                found = path + file->d_name;
        closedir(reader);
        if (!found.isEmpty())
            return found;
    }
    return {};
}

void sync_folder(const QByteArray &path)
{
    const int folder = open(path.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0)
        return;
    fsync(folder);
    close(folder);
}

}

void move_queue::ask(const QByteArray &from_folder, const QByteArray &name, bool is_new, const QByteArray &to_folder)
{
    if (waiting.empty())
        times_lost_before = times_writes_were_lost();
    waiting.push_back({from_folder, name, to_folder, is_new});
}

void move_queue::finish()
{
    if (waiting.empty())
        return;
    const std::vector<wanted_move> moves = std::exchange(waiting, {});
    before_outside_effect();
    if (times_writes_were_lost() != times_lost_before)
        return;
    for (const wanted_move &move : moves)
        move_one(move);
}

void move_queue::move_one(const wanted_move &move)
{
    const QByteArray source_folder = move.from_folder + (move.is_new ? "/new/" : "/cur/");
    const QByteArray target_folder = move.to_folder + "/cur/";
    int failure = rename_under_free_name(source_folder + move.name, target_folder, name_for_cur(move.name));
    if (failure == ENOENT) {
        const QByteArray path = present_path(move.from_folder, move.name);
        const QByteArray name = path.sliced(path.lastIndexOf('/') + 1);
        if (!path.isEmpty())
            failure = rename_under_free_name(path, target_folder, name_for_cur(name));
    }
    if (failure != 0)
        return failures.push_back(file_failure("The mail cannot be moved", source_folder + move.name, failure));
    for (const QByteArray &folder : {target_folder, source_folder})
        if (std::find(touched_folders.begin(), touched_folders.end(), folder) == touched_folders.end())
            touched_folders.push_back(folder);
}

void move_queue::make_durable()
{
    for (const QByteArray &folder : std::exchange(touched_folders, {}))
        sync_folder(folder);
}

}
