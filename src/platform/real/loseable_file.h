// SQLite files of what is remembered of mails. They may be lost at any time, but a passing trouble is no reason to
// throw one away, and nobody else may read them.
#pragma once
#include <QString>

namespace loseable_file {

// Whether the file itself is at fault: damaged, no database, or with other tables. A lock, a full disk and the like
// pass.
bool is_spoilt(int sqlite_result);

// Makes it where it is not there, readable by its owner alone. What SQLite lays beside it gets the mode of the file.
void make_private(const QString &path);

void remove(const QString &path); // with what lies beside it

}
