#include "support/open_keyring.h"
#include <QDir>
#include <QFile>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <unistd.h>
#include <vector>

QByteArray bytes_of(const QString &path)
{
    QFile file(path);
    return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
}

// By the runtime folder that it got.
pid_t keyring_process()
{
    const QByteArray ours = "XDG_RUNTIME_DIR=" + qgetenv("XDG_RUNTIME_DIR");
    for (const QString &number : QDir("/proc").entryList({"[0-9]*"}, QDir::Dirs))
        if (bytes_of("/proc/" + number + "/comm").startsWith("gnome-keyring") &&
            bytes_of("/proc/" + number + "/environ").split('\0').contains(ours))
            return number.toInt();
    return 0;
}

stopped_keyring::stopped_keyring() : process(keyring_process())
{
    kill(process, SIGSTOP);
}

stopped_keyring::~stopped_keyring()
{
    kill(process, SIGCONT);
}

void start_again_in_keyring(char **argv)
{
    if (!qEnvironmentVariableIsEmpty("TESSALY_TEST_KEYRING"))
        return;
    // An empty line is the keyring's password.
    const char *open_keyring = "echo | gnome-keyring-daemon --unlock --components=secrets --daemonize >/dev/null && "
                               "TESSALY_TEST_KEYRING=open exec \"$0\" \"$@\"";
    std::vector<const char *> words{"dbus-run-session", "--", "/bin/sh", "-c", open_keyring};
    for (; *argv; ++argv)
        words.push_back(*argv);
    words.push_back(nullptr);
    execvp(words[0], const_cast<char **>(words.data()));
    std::perror("dbus-run-session");
    std::_Exit(1);
}
