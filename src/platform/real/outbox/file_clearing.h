// Takes the files of mails that went away, beside the sending of the next ones. A file system may let each removal wait
// for its disk, one by one some milliseconds; side by side they wait together, so there are several hands.
#pragma once
#include <QString>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace outbox {

class file_clearing {
public:
    // remove is called on threads of its own, several at a time; false: it could not be.
    explicit file_clearing(std::function<bool(const QString &)> remove) : remove(std::move(remove)) {}
    ~file_clearing() { finish(); }
    file_clearing(const file_clearing &) = delete;
    file_clearing &operator=(const file_clearing &) = delete;

    void add(const QString &id); // where no thread can be had, it removes it itself
    bool finish();               // waits for all; false: one could not be removed

private:
    void run();
    bool has_hands(); // and calls one more, where that is of use

    std::function<bool(const QString &)> remove;
    std::mutex guard; // of all below
    std::condition_variable woken;
    std::deque<QString> waiting;
    size_t busy = 0; // hands
    bool ending = false, all_removed = true;
    std::vector<std::thread> hands;
};

}
