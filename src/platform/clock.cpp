#include "platform/clock.h"

namespace {

struct clock_state {
    std::function<QDateTime()> replaced;
} clock_used;

QDateTime as_wall_clock(const QDateTime &local)
{
    return QDateTime(local.date(), QTime(local.time().hour(), local.time().minute(), local.time().second()), Qt::UTC);
}

}

QDateTime now()
{
    return clock_used.replaced ? clock_used.replaced() : as_wall_clock(QDateTime::currentDateTime());
}

QDate today()
{
    return now().date();
}

QDateTime wall_clock(qint64 seconds_since_1970)
{
    return as_wall_clock(QDateTime::fromSecsSinceEpoch(seconds_since_1970));
}

void set_clock(std::function<QDateTime()> clock)
{
    clock_used.replaced = std::move(clock);
}
