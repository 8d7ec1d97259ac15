// Restore: a chosen copy takes the store's place, and the present store is kept beside it.
// The copies come from back_up.h.
#pragma once

// Asks for the file and whether to go on, looks at the file, and puts it in the store's place. True: that was done and
// told, the store is closed, and the process has to end now. False: cancelled, or told why not, and nothing is changed.
// Throws run_time_error; the store is then what it was, and may be closed.
bool restore_backup();
