#include "platform/folder_exchange.h"
#include "platform/folders.h"
#include "platform/run_time_error.h"

#include <QDir>
#include <QFileInfo>

namespace {

// Only for as long as the exchange lasts: whoever finds it later knows that it was broken off.
const QString aside_for_now = QStringLiteral(".put aside by Tessaly");
const QString aside_for_good = QStringLiteral(".former");

QString free_name(const QString &path, const QString &ending)
{
    QString name = path + ending;
    for (int number = 2; EntryExists(name); ++number)
        name = path + ending + u' ' + QString::number(number);
    return name;
}

QStringList left_aside(const QString &place)
{
    const QFileInfo told(place);
    const QString start = told.fileName() + aside_for_now;
    QStringList found;
    for (const QString &name :
         QDir(told.path()).entryList({start + u'*'}, QDir::AllEntries | QDir::Hidden | QDir::System, QDir::Name))
        if (name == start || name.startsWith(start + u' '))
            found += told.path() + u'/' + name;
    return found;
}

// An empty folder is what the exchange made; it goes. Anything else stays.
bool is_free(const QString &place)
{
    return !EntryExists(place) || (!QFileInfo(place).isSymLink() && QDir().rmdir(place));
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
    if (!EntryExists(place))
        return;
    const QString aside = free_name(place, aside_for_now);
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
            const QString name = free_name(each.place, aside_for_good); // the new folders stand, and are used
            left += QDir().rename(each.aside, name) ? name : each.aside;
        }
    }
    former.clear();
    made.clear();
    return left;
}

QStringList folder_exchange::bring_back(const QString &folder, const QStringList &names)
{
    QStringList left;
    for (const QString &name : names) {
        const QString place = folder_exchange(folder).path_of(name);
        for (const QString &aside : left_aside(place))
            if (!is_free(place) || !QDir().rename(aside, place))
                left += aside;
    }
    return left;
}
