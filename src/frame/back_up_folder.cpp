#include "frame/back_up_folder.h"
#include "frame/back_up_contents.h"
#include "frame/messages.h"
#include "platform/app_folder.h"
#include "platform/folders.h"
#include "platform/settings.h"

#include <QFileInfo>

namespace {

// A link that leads nowhere is something, too.
bool is_there(const QString &path)
{
    const QFileInfo found(path);
    return found.exists() || found.isSymLink();
}

bool lies_in(const QString &inner, const QString &outer)
{
    return inner == outer || inner.startsWith(below(outer, u""));
}

// What is emptied for the back-up must not be the program, nor the back-up lie where the program is.
bool touches_the_program(const QString &folder)
{
    const QString program = GetAbsolutePathName(app_folder());
    return lies_in(folder, program) || lies_in(program, below(folder, u"data")) ||
           lies_in(program, below(folder, u"html"));
}

// Whether all that is there of the path are folders.
bool can_be_a_folder(QString path)
{
    while (!is_there(path) && path != u"/")
        path = GetParentFolderName(path);
    return FolderExists(path);
}

bool strangers_may_go(const QString &folder)
{
    constexpr int most_named = 8;
    QStringList strangers = strangers_in(folder, most_named + 1);
    if (strangers.isEmpty())
        return true;
    if (strangers.size() > most_named)
        strangers.last() = "...";
    return yes_no("The folders \"data\" and \"html\" in " + folder +
                      " are emptied for the back-up, and they hold something else:\n\n" + strangers.join(u'\n') +
                      "\n\nDo you want to delete all that is in them?",
                  "Tessaly", message_icon::exclamation);
}

void remove_whatever_is(const QString &path)
{
    if (FolderExists(path))
        DeleteFolder(path);
    else if (is_there(path))
        DeleteFile(path);
}

}

QString below(const QString &folder, QStringView name)
{
    const QString start = folder.endsWith(u'/') ? folder : QString(folder + u'/');
    return start + name.toString();
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

bool keep_back_up_folder(const QString &path)
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
    if (!strangers_may_go(real))
        return false;
    make_folders(real);
    for (const QStringView name : {u"data", u"html"})
        remove_whatever_is(below(real, name));
    for (const QStringView name : {u"data", u"html"})
        CreateFolder(below(real, name));
    SaveSettings("main", {{"backup", path}, {"install_location", app_folder()}});
    return true;
}

QString former_back_up(const QString &path)
{
    return path.isEmpty() || GetDriveName(path).isEmpty() ? QString() : time_of_store_in(GetAbsolutePathName(path));
}
