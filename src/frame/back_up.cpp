#include "frame/back_up.h"
#include "frame/back_up_contents.h"
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

bool may_be_written(const QString &target)
{
    if (touches_the_program(GetAbsolutePathName(GetParentFolderName(target))))
        return say("The folder of the program takes no back-up. Please choose another one.", "Tessaly",
                   message_icon::exclamation),
               false;
    return !FileExists(target) || yes_no("File already exists! Overwrite?");
}

QString chosen_target()
{
    while (services.dialogs) {
        const auto chosen = services.dialogs->ShowSave("Tessaly.mdb", "*.mdb");
        if (!chosen || may_be_written(*chosen))
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
QStringList forms_to_copy()
{
    const QString forms = app_path(u"\\forms");
    return FolderExists(forms) ? SubFolders(forms) : QStringList();
}

// Nobody chose this folder for the forms: html is a common name, and files in it are overwritten.
bool html_beside_may_be_used(const QString &html)
{
    const QStringList there = FolderExists(html) ? names_in_html(html) : QStringList();
    return there.isEmpty() || forms_to_copy().isEmpty() ||
           yes_no_before_loss("The folder " + html + " holds something already:\n\n" + list_of(there) +
                              "\n\nYour forms are copied there, and files of the same names are overwritten. "
                              "Do you want to copy them there?");
}

void copy_forms(const QString &html)
{
    const QString forms = app_path(u"\\forms");
    const QStringList names = forms_to_copy();
    if (names.isEmpty())
        return;
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
    if (!folder.isEmpty())
        bring_back_what_a_kill_left(folder);
    const QString configured = configured_target(folder);
    if (configured.isEmpty() && !folder.isEmpty()) // the disk may not be plugged in
        report_progress("The folder for back-ups is not there (" + folder + "). Please choose a file", 0, 0);
    const QString target = configured.isEmpty() ? chosen_target() : configured;
    if (target.isEmpty())
        return {};
    copy_store_to(target);
    const QString html = below(folder.isEmpty() ? GetParentFolderName(target) : folder, u"html");
    if (html_folder_is_there(html) && (!folder.isEmpty() || html_beside_may_be_used(html)))
        copy_forms(html);
    return target;
}
