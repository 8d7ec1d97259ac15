// The folder that takes the back-ups, as the user chooses it: what may be one, what lies in it, making it ready.
// What is copied there, and when: back_up.h. The screen: screens/frame/backup_frm.h.
#pragma once
#include <QStringList>

// The folder's file or folder of that name.
QString below(const QString &folder, QStringView name);

// Each folder of the path that is not there, from the one that is downward.
void make_folders(const QString &path);

// Whether the folder, free of links, is the program's, one inside it, or one whose data or html holds the program.
bool touches_the_program(const QString &folder);

// What next_b of backup_frm does before the setup ends: tests the path, asks what has to be asked, empties data and
// html below it, and keeps it in the settings. During the setup it asks before a former back-up goes. False: the user
// was told, or said No; nothing is changed then. Throws run_time_error.
bool keep_back_up_folder(const QString &path, bool in_setup);

// A kill while a folder was made ready leaves what was there before under another name. It comes back; where something
// else has its place by now, the user is told where it is.
void bring_back_what_a_kill_left(const QString &folder);

// What keep_back_up_folder would remove of a former back-up: its day and time, or "" when there is none.
QString former_back_up(const QString &path);
