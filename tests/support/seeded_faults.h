// Faults of a line at points that come from a seed, which is printed and can be given again, and what a fetch through
// one may end as.
#pragma once
#include "support/fault_program.h"
#include "support/wire_proxy.h"

bool is_long_run();   // TESSALY_LONG is set
quint32 fault_seed(); // TESSALY_SEED repeats a run

// Each kind in turn. Half of them in the first 2,000 bytes, which is the dialogue; of the others, one in five in what
// the client says. whole: the bytes of an undisturbed fetch.
QList<wire_fault> seeded_faults(int count, const wire_counts &whole);
QString name_of(const wire_fault &fault);

// "" when it ended by itself, in time, and told why where it failed.
QString what_is_wrong_with_spoilt(const timed_run &spoilt);

constexpr qint64 dialogue_bytes = 2000;
