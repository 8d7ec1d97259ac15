// A consistent copy of an open store, made beside the target and renamed over it, on disk when this returns.
#pragma once
#include <QString>

struct sqlite3;

namespace jet {

// Fails with store_failure; an older file of the target's name is then as it was.
void copy_store_file(sqlite3 *from, const QString &from_path, const QString &target);

}
