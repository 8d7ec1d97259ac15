// Back-up: a copy of the store and of the user's forms in the folder that was chosen (setting "backup").
// Choosing it: back_up_folder.h. The way back: restore.h.
#pragma once
#include <QString>

// Copies the store to "Tessaly.mdb" in the folder data below the setting's folder; where that is not there, to a file
// asked for by a dialog. Then each sub-folder of the program's folder forms into the folder html beside, which is made
// when the user wants it. Reports its progress. The copy of the store, "" when the dialog was cancelled. Throws
// run_time_error; what was copied until then stays.
QString run_backup();
