// An mbox file, open for reading only: its state, its bytes, and the locks that other mail programs respect.
#pragma once
#include "platform/network.h"
#include <QByteArray>

namespace mbox {

struct file_state {
    qint64 device = 0, inode = 0, size = 0, changed_ns = 0;
    bool operator==(const file_state &) const = default;
};

class file {
public:
    // Throws 76 where it is missing or a folder, 70 where it is closed to us.
    file(const QString &path, const net::patience &patience);
    ~file();
    file(const file &) = delete;
    file &operator=(const file &) = delete;

    file_state state() const; // of the file that is open, also when another one lies at its path by now
    QByteArray read(qint64 at, qint64 size) const; // shorter at the end of the file

    const QString path;

private:
    friend class shared_lock;
    net::patience patience;
    int number = -1;
};

file_state state_at(const QString &path); // all 0 where there is nothing

// While it lives nobody who respects locks writes: fcntl and flock, shared. Waits for others' locks, and for a file
// PATH.lock that is younger than five minutes, at most five seconds; then throws 70. Leaves no file behind.
class shared_lock {
public:
    explicit shared_lock(const file &of);
    ~shared_lock();
    shared_lock(const shared_lock &) = delete;
    shared_lock &operator=(const shared_lock &) = delete;

private:
    bool take() const;
    void let_go() const;
    const file &locked;
};

}
