// Failures that are told later, one at a time, in their order.
#pragma once
#include "platform/run_time_error.h"
#include <deque>
#include <optional>

class failure_queue {
public:
    void push_back(const run_time_error &failure) { waiting.push_back(failure); }
    std::optional<run_time_error> take_next()
    {
        if (waiting.empty())
            return std::nullopt;
        const run_time_error next = waiting.front();
        waiting.pop_front();
        return next;
    }

private:
    std::deque<run_time_error> waiting;
};
