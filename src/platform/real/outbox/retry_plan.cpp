#include "platform/real/outbox/retry_plan.h"
#include <array>

namespace outbox {

namespace {

constexpr int a_minute = 60;
constexpr std::array<int, 7> until_reconnecting{
    30, a_minute, 2 * a_minute, 5 * a_minute, 10 * a_minute, 20 * a_minute, 30 * a_minute};
constexpr std::array<int, 4> until_next_try{5 * a_minute, 15 * a_minute, 60 * a_minute, 240 * a_minute};
constexpr qint64 longest_trying = 3 * 24 * 60 * a_minute;

template <size_t count>
int step_of(const std::array<int, count> &steps, int number)
{
    return steps[size_t(qBound(0, number - 1, int(count) - 1))];
}

}

int seconds_until_reconnecting(int failures)
{
    return step_of(until_reconnecting, failures);
}

void note_postponed(record &mail, qint64 seconds)
{
    ++mail.tries;
    const bool clock_was_set_back = seconds < mail.first_try;
    if (mail.first_try == 0 || clock_was_set_back)
        mail.first_try = seconds;
    mail.next_try = seconds + step_of(until_next_try, mail.tries);
    if (seconds - mail.first_try < longest_trying)
        return;
    for (recipient &one : mail.left)
        if (one.state == recipient_state::waiting)
            one = {one.address, recipient_state::refused, QStringLiteral("Tried for three days. %1").arg(one.words)};
}

}
