// The program's folder, <app>: where the store, the log, the mail and the delivered files lie. One place knows it.
#pragma once
#include <QString>

// The folder of the running program when it can be written, else the user's data folder, which is seeded from the
// installed one at the first start (what exists there is never touched).
QString app_folder();
// A copy of all but the executables, whole or not at all: a store that was copied by half would be opened for ever.
void seed_folder(const QString &from, const QString &to);
void set_app_folder(const QString &folder); // the driver's --folder, and tests

// "<app>" followed by a path in the program's own writing, such as "\mailapp.mdb".
QString app_path(QStringView tail);

// One running program or driver a folder. The lock dies with the process, so a killed one leaves none behind.
// False: another one holds it. Throws 76 where the folder is not there, 70 where it cannot be written, 75 where its
// file system has no locks.
bool lock_app_folder();
void unlock_app_folder();
