// A consistent copy of an open store, made beside the target and renamed over it, on disk when this returns.
// A store that is put in the place of another: store_file.cpp.
#pragma once
#include "platform/ado.h"

struct sqlite3;

namespace jet {

// Fails with store_failure; an older file of the target's name is then as it was.
void copy_store_file(sqlite3 *from, const QString &from_path, const QString &target,
                     const ado::Connection::told_pages &told);

// By SQLite's own check of all pages. The check itself can fail, such as on a locked file: its result code.
bool is_sound(sqlite3 *store, int *result = nullptr);

}
