// Raising the store's errors, and turning SQLite's into them.
#pragma once
#include "platform/ado.h"

struct sqlite3;

namespace jet {

[[noreturn]] void fail(quint32 number, const QString &description);
[[noreturn]] void fail_syntax(const QString &near_text = {});
[[noreturn]] void fail_mismatch(); // of a value on its way into a column
[[noreturn]] void fail_criteria(); // of the two sides of a comparison
[[noreturn]] void fail_no_column(const QString &name);
[[noreturn]] void fail_too_long();

run_time_error failure_of(sqlite3 *db, int result_code); // what SQLite said last, under the numbers of ado.h

}
