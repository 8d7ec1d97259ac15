#include "support/seeded_faults.h"
#include <QRandomGenerator>

namespace {

constexpr quint32 usual_seed = 20261121;
constexpr qint64 grace_ms = 5000;

}

bool is_long_run()
{
    return qEnvironmentVariableIsSet("TESSALY_LONG");
}

quint32 fault_seed()
{
    return qEnvironmentVariableIsSet("TESSALY_SEED") ? qEnvironmentVariable("TESSALY_SEED").toUInt() : usual_seed;
}

QString name_of(const wire_fault &fault)
{
    static const QStringList names{"close", "reset", "stall", "noise"};
    return QString("%1 at byte %2 %3, %4")
        .arg(names.at(fault.kind))
        .arg(fault.at_byte)
        .arg(fault.direction == wire::to_client ? "to the client" : "to the server",
             fault.connection < 0 ? "every connection" : "the first connection");
}

QList<wire_fault> seeded_faults(int count, const wire_counts &whole)
{
    QRandomGenerator random(fault_seed());
    QList<wire_fault> faults;
    for (int number = 0; number < count; ++number) {
        wire_fault fault;
        fault.kind = wire_fault::kind_of(number % 4);
        const bool early = number / 4 % 2 == 0;
        fault.direction = !early && random.bounded(5) == 0 ? wire::to_server : wire::to_client;
        const qint64 all = fault.direction == wire::to_server ? whole.to_server : whole.to_client;
        fault.at_byte = early ? random.bounded(dialogue_bytes)
                              : dialogue_bytes + random.bounded(qMax<qint64>(1, all - dialogue_bytes));
        if (fault.direction == wire::to_server)
            fault.at_byte = random.bounded(all);
        fault.connection = random.bounded(3) == 0 ? -1 : 0;
        fault.seed = random.generate();
        faults += fault;
    }
    return faults;
}

QString what_is_wrong_with_spoilt(const timed_run &spoilt)
{
    if (spoilt.run.status != 0 && spoilt.run.status != 1)
        return QString("ended with %1: %2").arg(spoilt.run.status).arg(spoilt.run.errors);
    if (spoilt.run.status == 1 && spoilt.run.errors.isEmpty())
        return "failed without a word";
    if (spoilt.ms > fault_program::timeout_seconds * 1000 + grace_ms)
        return QString("took %1 ms").arg(spoilt.ms);
    return {};
}
