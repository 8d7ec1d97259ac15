#include "platform/real/outbox/file_clearing.h"
#include <system_error>

namespace outbox {

namespace {

constexpr size_t most_hands = 16;
constexpr size_t enough_for_one = 4; // to call a hand costs about as much as a removal that waits for nothing

}

void file_clearing::add(const QString &id)
{
    std::unique_lock lock(guard);
    waiting.push_back(id);
    if (has_hands())
        return;
    waiting.pop_back();
    lock.unlock();
    const bool removed = remove(id);
    lock.lock();
    all_removed = all_removed && removed;
}

bool file_clearing::has_hands()
{
    if (waiting.size() <= enough_for_one * busy)
        return true;
    try {
        if (busy < hands.size())
            woken.notify_one();
        else if (hands.size() < most_hands)
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
        ++busy;
        while (!waiting.empty()) {
            const QString id = waiting.front();
            waiting.pop_front();
            lock.unlock();
            const bool removed = remove(id);
            lock.lock();
            all_removed = all_removed && removed;
        }
        --busy;
    }
}

}
