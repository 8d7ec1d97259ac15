#include "platform/real/outbox/file_clearing.h"
#include <system_error>

namespace outbox {

namespace {

constexpr size_t most_hands = 16;

}

void file_clearing::add(const QString &id)
{
    std::unique_lock lock(guard);
    if (has_hands()) {
        waiting.push_back(id);
        woken.notify_one();
        return;
    }
    lock.unlock();
    const bool removed = remove(id);
    lock.lock();
    all_removed = all_removed && removed;
}

bool file_clearing::has_hands()
{
    try {
        if (hands.size() < most_hands && waiting.size() >= hands.size())
            hands.emplace_back([this] { run(); });
    } catch (const std::system_error &) { // no more threads: those that are there will do
    }
    return !hands.empty();
}

bool file_clearing::finish()
{
    {
        const std::lock_guard lock(guard);
        ending = true;
    }
    woken.notify_all();
    for (std::thread &one : hands)
        one.join();
    hands.clear();
    ending = false;
    return all_removed;
}

void file_clearing::run()
{
    std::unique_lock lock(guard);
    while (true) {
        woken.wait(lock, [this] { return ending || !waiting.empty(); });
        if (waiting.empty())
            return;
        const QString id = waiting.front();
        waiting.pop_front();
        lock.unlock();
        const bool removed = remove(id);
        lock.lock();
        all_removed = all_removed && removed;
    }
}

}
