// A real keyring, open, on a message bus of the test's own.
#pragma once
#include <QString>
#include <sys/types.h>

// The program starts itself again where the keyring is; the second time this does nothing. First thing in main.
void start_again_in_keyring(char **argv);

pid_t keyring_process(); // of this run; 0 when it is not there
QByteArray bytes_of(const QString &path);

// Silent as long as it lives.
struct stopped_keyring {
    stopped_keyring();
    ~stopped_keyring();
    stopped_keyring(const stopped_keyring &) = delete;
    stopped_keyring &operator=(const stopped_keyring &) = delete;
    pid_t process;
};
