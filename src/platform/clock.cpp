#include "platform/clock.h"

#include <ctime>

namespace {

struct clock_state {
    std::function<QDateTime()> replaced;
} clock_used;

}

QDateTime now()
{
    return clock_used.replaced ? clock_used.replaced() : wall_clock(time(nullptr));
}

QDate today()
{
    return now().date();
}

qint64 seconds_now()
{
    return qint64(time(nullptr));
}

QDateTime wall_clock(qint64 seconds_since_1970)
{
    const auto moment = time_t(seconds_since_1970);
    struct tm local {};
    if (!localtime_r(&moment, &local))
        return {};
    // A leap second is shown as the last one of its minute.
    return QDateTime(QDate(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday),
                     QTime(local.tm_hour, local.tm_min, qMin(local.tm_sec, 59)), Qt::UTC);
}

void set_clock(std::function<QDateTime()> clock)
{
    clock_used.replaced = std::move(clock);
}
