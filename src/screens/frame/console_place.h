// Where the console stood and how big it was, kept in the user's settings from one run to the next.
#pragma once

class QWidget;

void restore_console_place(QWidget &console);    // nothing kept, or nothing of use: as it is
void keep_console_place(const QWidget &console); // may throw, as every saving of a setting
