// Back-up: a consistent copy of the store in the folder that the user chose (setting "backup").
#pragma once
#include <QString>

// Copies the store to "Tessaly.mdb" in the folder data below the setting's folder; where that is not there, to a file
// asked for by a dialog. The file that was written, "" when the dialog was cancelled. Throws run_time_error.
QString run_backup();
