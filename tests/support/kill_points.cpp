#include "support/kill_points.h"

#include <QRandomGenerator>

namespace {

constexpr quint32 usual_kill_seed = 20260813;

}

QList<int> points_in(int calls, int points)
{
    const quint32 seed =
        qEnvironmentVariableIsSet("TESSALY_SEED") ? qEnvironmentVariable("TESSALY_SEED").toUInt() : usual_kill_seed;
    qInfo("%d calls in a whole run, seed %u", calls, seed);
    QRandomGenerator random(seed);
    QList<int> chosen;
    for (int part = 0; part < points; ++part) {
        const int from = int(qint64(calls) * part / points);
        const int to = qMax(from + 1, int(qint64(calls) * (part + 1) / points));
        chosen += 1 + from + int(random.bounded(quint32(to - from)));
    }
    return chosen;
}

int usual_points()
{
    return qEnvironmentVariableIsSet("TESSALY_LONG") ? 100 : 20;
}
