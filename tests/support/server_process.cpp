#include "support/server_process.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <fcntl.h>
#include <grp.h>
#include <linux/close_range.h>
#include <poll.h>
#include <pwd.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

server_user server_user::ours()
{
    const passwd *user = ::geteuid() == 0 ? ::getpwnam("nobody") : ::getpwuid(::geteuid());
    const struct ::group *of_user = user ? ::getgrgid(user->pw_gid) : nullptr;
    if (!of_user)
        qFatal("a test's servers need a user with a name and a group");
    return {user->pw_uid, user->pw_gid, QString::fromLocal8Bit(user->pw_name),
            QString::fromLocal8Bit(of_user->gr_name)};
}

void server_user::give(const QString &path) const
{
    if (::geteuid() == 0 && ::lchown(path.toLocal8Bit().constData(), uid, gid) != 0)
        qFatal("cannot give %s to %s", qPrintable(path), qPrintable(name));
}

namespace {

// Between fork and exec only what is safe while other threads may hold locks.
[[noreturn]] void become(const std::vector<char *> &words, int says, const server_user &user, pid_t test)
{
    ::setpgid(0, 0);
    ::dup2(says, STDOUT_FILENO);
    ::dup2(says, STDERR_FILENO);
    ::close_range(3, ~0U, 0);
    const bool rights =
        ::geteuid() != 0 || (::setgroups(0, nullptr) == 0 && ::setgid(user.gid) == 0 && ::setuid(user.uid) == 0);
    ::prctl(PR_SET_PDEATHSIG, SIGKILL); // behind the change of rights, which takes it away
    sigset_t none;
    sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    ::signal(SIGPIPE, SIG_DFL);
    if (rights && ::getppid() == test)
        ::execv(words[0], words.data());
    ::_exit(127);
}

}

namespace {

pid_t group_of(const QString &process)
{
    QFile file(QStringLiteral("/proc/%1/stat").arg(process));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray text = file.readAll();
    return text.mid(text.lastIndexOf(')') + 2).split(' ').value(2).toInt(); // state, parent, group
}

// Whom the server left behind is no child of ours; a port is only free when they all are gone.
void end_group(pid_t group)
{
    std::vector<pollfd> members;
    for (const QString &name : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs))
        if (name.toInt() > 0 && name.toInt() != group && group_of(name) == group)
            members.push_back({int(::syscall(SYS_pidfd_open, name.toInt(), 0)), POLLIN, 0});
    ::kill(-group, SIGKILL);
    for (pollfd &member : members) {
        if (member.fd >= 0 && ::poll(&member, 1, 10000) != 1)
            qWarning("a part of a server does not end");
        ::close(member.fd);
    }
}

}

void server_process::start(const QStringList &command, const QString &says, const server_user &user)
{
    const QString program =
        QStandardPaths::findExecutable(command.first(), {"/usr/sbin", "/usr/bin", "/usr/local/bin"});
    const QString found = command.first().startsWith(u'/') ? command.first() : program;
    if (found.isEmpty())
        qFatal("there is no program %s: tools/install_packages test", qPrintable(command.first()));
    std::vector<QByteArray> texts{found.toLocal8Bit()};
    for (const QString &argument : command.mid(1))
        texts.push_back(argument.toLocal8Bit());
    std::vector<char *> words;
    for (QByteArray &text : texts)
        words.push_back(text.data());
    words.push_back(nullptr);
    const int output = ::open(says.toLocal8Bit().constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    const pid_t test = ::getpid();
    process = output < 0 ? -1 : ::fork();
    if (process == 0)
        become(words, output, user, test);
    ended = process > 0 ? int(::syscall(SYS_pidfd_open, process, 0)) : -1;
    if (ended < 0)
        qFatal("cannot start %s", qPrintable(found));
    ::setpgid(process, process); // whoever of the two is first
    ::close(output);
}

bool server_process::ends_within(int milliseconds) const
{
    pollfd waits{ended, POLLIN, 0};
    return process <= 0 || ::poll(&waits, 1, milliseconds) == 1;
}

void server_process::end(int signal)
{
    if (process <= 0)
        return;
    ::kill(process, signal);
    if (!ends_within(10000))
        ::kill(process, SIGKILL);
    ends_within(10000);
    end_group(process); // before its number is given back, so that the group is still its own
    ::waitpid(process, nullptr, 0);
    ::close(ended);
    process = 0;
    ended = -1;
}
