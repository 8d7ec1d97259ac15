#include "platform/real/outbox/file_clearing.h"

namespace outbox {

namespace {

constexpr size_t most_hands = 16;

}

void file_clearing::add(const QString &id)
{
    const std::lock_guard lock(guard);
    waiting.push_back(id);
    if (hands.size() < most_hands && waiting.size() > hands.size())
        hands.emplace_back([this] { run(); });
    woken.notify_one();
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
