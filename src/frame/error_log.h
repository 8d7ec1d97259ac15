// Failures of a routine: caught, logged to <app>\errorlog.txt, and the routine has ended. Nothing is shown, resumed or
// rolled back.
#pragma once
#include "platform/run_time_error.h"
#include <functional>

// Runs body. A run_time_error fills the four err_ values of the session, calls write_error_log, and ends it.
// form and routine are the words that the log shows, such as "Mailfrm.frm" and "write_data". True: no error.
// Two failures are no entry of the log: what the user cancelled, and a server that a tick could not reach, as ticks
// come all night.
bool guarded(const char *form, const char *routine, const std::function<void()> &body);

// The same for one of many steps, such as one mail of a walk. A failure of the network passes on to the routine around
// it: the next step would only wait for the same server.
bool guarded_step(const char *form, const char *routine, const std::function<void()> &body);

// Closes the shared recordsets and appends the five lines: date and time, number (signed), description, form, routine.
// Also commits what the store was given so far. Where even the log cannot be written, the status bar says so.
void write_error_log();
