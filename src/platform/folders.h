// Folders, with the file system's own verbs for them. Files: text_file.h.
//
// A link is never followed: below a folder it is no folder, a copy leaves it out, and where a folder is removed the
// link goes and what it leads to stays. Only on the way to a path may links stand, as everywhere.
// All that change something throw run_time_error 76 (path not found), 58 (something of that name is there), 70
// (denied), 61 (disk full) or 75 (whatever else), with the path in the description.
#pragma once
#include <QDateTime>
#include <QStringList>

bool FolderExists(const QString &path);
bool EntryExists(const QString &path);             // whatever it is, also a link that leads nowhere
bool IsPlainFile(const QString &path);             // no link to one either
QDateTime DateLastModified(const QString &path);   // local time; not valid where nothing is
QString GetParentFolderName(const QString &path);  // "" above the root
QString GetDriveName(const QString &path);         // what the path hangs from, "/"; "" when it hangs from nothing
QString GetAbsolutePathName(const QString &path);  // clean, and free of links as far as the path is there
QStringList SubFolders(const QString &path);       // their names, sorted; of a folder that can be read
QStringList AllEntries(const QString &path);       // the same of files, links and whatever else is there
void CreateFolder(const QString &path);            // its parent must be there
void DeleteFolder(const QString &path);            // with all that is in it
void DeleteFile(const QString &path);              // also a link; not a folder
void Move(const QString &path, const QString &to); // whatever it is, a link itself; nothing may be there

// Puts a copy of the folder, under its own name, into another one that is there. What is there already stays, but for
// files of the same names: they are overwritten, each by a whole copy that takes its place when it is on disk.
// Only files and folders are copied; a folder is never copied into itself.
void CopyFolder(const QString &path, const QString &into);
