// What the dialect knows and SQLite does not: the collation JET and the functions that the translation calls.
#pragma once
#include "platform/run_time_error.h"
#include <optional>

struct sqlite3;

namespace jet {

// failure: where a function leaves what went wrong, as SQLite carries only a text. Must outlive the connection.
void add_functions(sqlite3 *db, std::optional<run_time_error> *failure);

}
