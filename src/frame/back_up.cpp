#include "frame/back_up.h"
#include "frame/back_up_folder.h"
#include "frame/messages.h"
#include "frame/status.h"
#include "frame/store.h"
#include "platform/app_folder.h"
#include "platform/dialogs.h"
#include "platform/folders.h"
#include "platform/services.h"
#include "platform/settings.h"
#include "platform/text_file.h"

namespace {

QString configured_target(const QString &folder)
{
    return !folder.isEmpty() && FolderExists(below(folder, u"data")) ? below(folder, u"data/Tessaly.mdb") : QString();
}

QString chosen_target()
{
    while (services.dialogs) {
        const auto chosen = services.dialogs->ShowSave("Tessaly.mdb", "*.mdb");
        if (!chosen || !FileExists(*chosen) || yes_no("File already exists! Overwrite?"))
            return chosen.value_or(QString());
    }
    return {};
}

void copy_store_to(const QString &target)
{
    open_store_if_closed();
    session.store_connection->copy_store(
        target, [](qint64 done, qint64 total) { report_progress("Copying the store", done, total); });
}

bool html_folder_is_there(const QString &html)
{
    if (FolderExists(html))
        return true;
    say("Folder " + html + " does not exists! Unable to take backup!");
    if (!yes_no("Do you want to create a new folder called " + html + " ?"))
        return false;
    make_folders(GetParentFolderName(html));
    CreateFolder(html);
    return true;
}

// A program folder without forms has nothing to copy.
void copy_forms(const QString &html)
{
    const QString forms = app_path(u"\\forms");
    if (!FolderExists(forms))
        return;
    const QStringList names = SubFolders(forms);
    for (qsizetype done = 0; done < names.size(); ++done) {
        report_progress("Copying your forms", done, names.size());
        CopyFolder(below(forms, names[done]), html);
    }
    report_progress("Copying your forms", names.size(), names.size());
}

}

QString run_backup()
{
    const QString folder = GetSetting("main", "backup");
    const QString configured = configured_target(folder);
    const QString target = configured.isEmpty() ? chosen_target() : configured;
    if (target.isEmpty())
        return {};
    copy_store_to(target);
    const QString html = below(folder.isEmpty() ? GetParentFolderName(target) : folder, u"html");
    if (html_folder_is_there(html))
        copy_forms(html);
    return target;
}
