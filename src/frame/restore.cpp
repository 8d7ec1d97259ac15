#include "frame/restore.h"
#include "frame/back_up_folder.h"
#include "frame/fixed_tables.h"
#include "frame/messages.h"
#include "frame/store.h"
#include "platform/app_folder.h"
#include "platform/clock.h"
#include "platform/dialogs.h"
#include "platform/folders.h"
#include "platform/services.h"
#include "platform/settings.h"
#include "platform/store_file.h"
#include "platform/text_file.h"

namespace {

QString proposed_file()
{
    const QString folder = GetSetting("main", "backup");
    return !folder.isEmpty() && FolderExists(below(folder, u"data")) ? below(folder, u"data/Tessaly.mdb")
                                                                     : QStringLiteral("Tessaly.mdb");
}

void close_all()
{
    for (const auto *recordset : {&session.shared_rs, &session.format_rs, &session.mail_rs, &session.map_rs})
        if ((*recordset)->State() != 0)
            (*recordset)->Close();
    close_store();
}

// The copy that was looked at lies beside the store until it has taken its place.
struct copy_beside {
    const QString store;
    ~copy_beside() { store_file::drop_copy_beside(store); }
};

// "mailapp 2026-11-21 15-30-12.mdb", or the next free name after it.
QString name_to_keep()
{
    const QString start = app_path(u"\\mailapp ") + now().toString(QStringLiteral("yyyy-MM-dd hh-mm-ss"));
    QString name = start + ".mdb";
    for (int number = 2; FileExists(name); ++number)
        name = start + " (" + QString::number(number) + ").mdb";
    return name;
}

}

bool restore_backup()
{
    const auto chosen =
        services.dialogs ? services.dialogs->ShowOpen(proposed_file(), "*.mdb|*.mdb") : std::optional<QString>();
    if (!chosen)
        return false;
    if (!FileExists(*chosen))
        return say("File not found"), false;
    if (!yes_no("Are you sure to restore this database?", "Confirm Restore"))
        return false;
    const QString store = app_path(u"\\mailapp.mdb");
    const QString fault = store_file::lay_copy_beside(*chosen, store, fixed_tables());
    if (!fault.isEmpty())
        return say("This file cannot be restored: " + fault + ". Your data is as it was.", "Tessaly",
                   message_icon::exclamation),
               false;
    const copy_beside made{store};
    close_all();
    const QString kept = name_to_keep();
    store_file::take_place(store, kept);
    say_with("Database will be restored once you restart the application. Click here to close the application.",
             "Your previous data is kept in " + kept);
    return true;
}
