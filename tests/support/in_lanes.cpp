#include "support/in_lanes.h"
#include <atomic>
#include <thread>
#include <vector>

namespace {

constexpr int lanes = 6;

}

QStringList in_lanes(int count, const std::function<QString(int)> &work)
{
    std::atomic<int> next{0};
    QStringList found(count);
    std::vector<std::thread> threads;
    for (int lane = 0; lane < lanes; ++lane)
        threads.emplace_back([&] {
            for (int number = next++; number < count; number = next++)
                found[number] = work(number);
        });
    for (std::thread &thread : threads)
        thread.join();
    found.removeAll(QString());
    return found;
}
