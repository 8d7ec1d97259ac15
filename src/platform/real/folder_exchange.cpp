#include "platform/folder_exchange.h"
#include "platform/folders.h"
#include "platform/run_time_error.h"

#include <QDir>
#include <QFileInfo>

namespace {

bool is_there(const QString &path)
{
    const QFileInfo found(path);
    return found.exists() || found.isSymLink();
}

QString free_name(const QString &path)
{
    QString name = path + ".former";
    for (int number = 2; is_there(name); ++number)
        name = path + ".former " + QString::number(number);
    return name;
}

}

// The names are free again or hold what was made here, which is empty.
folder_exchange::~folder_exchange()
{
    for (const QString &path : made)
        QDir().rmdir(path);
    for (const moved &each : former)
        QDir().rename(each.aside, each.place);
}

QString folder_exchange::path_of(const QString &name) const
{
    return in.endsWith(u'/') ? QString(in + name) : QString(in + u'/' + name);
}

void folder_exchange::put_aside(const QString &name)
{
    const QString place = path_of(name);
    if (!is_there(place))
        return;
    const QString aside = free_name(place);
    Move(place, aside);
    former.push_back({place, aside});
}

void folder_exchange::exchange(const QStringList &names)
{
    for (const QString &name : names)
        put_aside(name);
    for (const QString &name : names) {
        CreateFolder(path_of(name));
        made += path_of(name);
    }
}

QStringList folder_exchange::finish()
{
    QStringList left;
    for (const moved &each : former) {
        try {
            FolderExists(each.aside) ? DeleteFolder(each.aside) : DeleteFile(each.aside);
        } catch (const run_time_error &) {
            left += each.aside; // the new folders stand, and are used
        }
    }
    former.clear();
    made.clear();
    return left;
}
