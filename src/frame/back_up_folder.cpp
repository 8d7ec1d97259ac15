#include "frame/back_up_folder.h"
#include "frame/back_up_contents.h"
#include "frame/messages.h"
#include "platform/app_folder.h"
#include "platform/folder_exchange.h"
#include "platform/folders.h"
#include "platform/settings.h"

namespace {

bool lies_in(const QString &inner, const QString &outer)
{
    return inner == outer || inner.startsWith(below(outer, u""));
}

// Whether all that is there of the path are folders.
bool can_be_a_folder(QString path)
{
    while (!EntryExists(path) && path != u"/")
        path = GetParentFolderName(path);
    return FolderExists(path);
}

bool strangers_may_go(const QString &folder)
{
    const QStringList strangers = strangers_in(folder);
    return strangers.isEmpty() ||
           yes_no_before_loss("The folders \"data\" and \"html\" in " + folder +
                              " are emptied for the back-up, and they hold something else:\n\n" + list_of(strangers) +
                              "\n\nDo you want to delete all that is in them?");
}

// Whoever sets Tessaly up anew, on a new disk perhaps, may have no other copy of all their data.
bool former_back_up_may_go(const QString &folder)
{
    const QString time = time_of_store_in(folder);
    return time.isEmpty() ||
           yes_no_before_loss("There is a back-up of Tessaly of " + time + " in " + folder +
                              ". Going on deletes it.\n\nTo bring its data back instead, answer No, finish the setup "
                              "with another folder, and then choose \"Restore from Backup\" in the menu File.\n\n"
                              "Do you want to delete this back-up?");
}

void make_ready_and_keep(const QString &path, const QString &real)
{
    make_folders(real);
    folder_exchange exchanged(real);
    exchanged.exchange({"data", "html"});
    SaveSettings("main", {{"backup", path}, {"install_location", app_folder()}});
    const QStringList left = exchanged.finish();
    if (!left.isEmpty())
        say("The folder is ready. What was there before could not be deleted, and is now here:\n\n" + left.join(u'\n'),
            "Tessaly", message_icon::exclamation);
}

}

QString below(const QString &folder, QStringView name)
{
    const QString start = folder.endsWith(u'/') ? folder : QString(folder + u'/');
    return start + name.toString();
}

// What is emptied for the back-up must not be the program, nor the back-up lie where the program is.
bool touches_the_program(const QString &folder)
{
    const QString program = GetAbsolutePathName(app_folder());
    return lies_in(folder, program) || lies_in(program, below(folder, u"data")) ||
           lies_in(program, below(folder, u"html"));
}

void make_folders(const QString &path)
{
    const QString real = GetAbsolutePathName(path);
    QStringList missing;
    for (QString folder = real; !folder.isEmpty() && !FolderExists(folder); folder = GetParentFolderName(folder))
        missing.prepend(folder);
    for (const QString &folder : missing)
        CreateFolder(folder);
}

bool keep_back_up_folder(const QString &path, bool in_setup)
{
    if (path.isEmpty())
        return say("Please specify a folder"), false;
    if (GetDriveName(path).isEmpty())
        return say("Invalid Path"), false;
    const QString real = GetAbsolutePathName(path);
    if (touches_the_program(real))
        return say("Invalid Path"), false;
    if (!can_be_a_folder(real))
        return say("Invalid path"), false;
    if (!(FolderExists(real) || yes_no("Do you want to create a new folder called " + path + " ?")))
        return false;
    bring_back_what_a_kill_left(real);
    if ((in_setup && !former_back_up_may_go(real)) || !strangers_may_go(real))
        return false;
    make_ready_and_keep(path, real);
    return true;
}

void bring_back_what_a_kill_left(const QString &folder)
{
    const QStringList left = folder_exchange::bring_back(folder, {"data", "html"});
    if (!left.isEmpty())
        say("Making the folder for back-ups ready was broken off once. What was there before is now here, and nothing "
            "else knows of it:\n\n" +
                left.join(u'\n'),
            "Tessaly", message_icon::exclamation);
}

QString former_back_up(const QString &path)
{
    return path.isEmpty() || GetDriveName(path).isEmpty() ? QString() : time_of_store_in(GetAbsolutePathName(path));
}
