// A program folder with a full Inbox, copied afresh for each fault: form mails, a duplicate, letters that are none of
// ours and an unsubscribe. Fetched by the driver, looked at from outside.
#pragma once
#include "support/driver.h"

#include <QStringList>
#include <QTemporaryDir>

class fault_site {
public:
    fault_site(); // a fresh one; all are alike

    driver_run fetch() const;
    driver_run fetch_bound_by_modes() const;
    // The shim in force: which calls, and what at which of them ("KILL=7", "FULL=1").
    driver_run fetch_with(const QString &calls, const QStringList &shim_settings) const;
    int calls_of_a_whole_fetch(const QString &calls) const; // on this site, which is fetched by it

    QString path(const QString &name) const { return folder.filePath(name); }
    QString folder_path() const { return folder.path(); }

    // All "" when as it ought to be, else what is wrong.
    QString what_is_missing() const;           // each mail is in a folder once; whatever left the Inbox has its row
    QString what_is_wrong_after_fetch() const; // and all of ours left it, are stored once, and stand in the map
    QString store_damage() const;

private:
    driver_run run(const QStringList &variables, driver_rights rights) const;
    QTemporaryDir folder;
};
