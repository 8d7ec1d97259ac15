#include "frame/back_up_contents.h"
#include "frame/back_up_folder.h"
#include "platform/app_folder.h"
#include "platform/folders.h"
#include "platform/store_file.h"
#include "platform/text_file.h"

#include <QDateTime>
#include <QFileInfo>
#include <QLocale>

namespace {

bool is_plain_file(const QString &path)
{
    return FileExists(path) && !QFileInfo(path).isSymLink();
}

bool is_copy_of_a_store(const QString &path)
{
    return is_plain_file(path) && store_file::is_of_ours(path);
}

class stranger_search {
public:
    explicit stranger_search(int most_wanted) : most(most_wanted) {}

    void look_into_data(const QString &data)
    {
        for (const QString &name : AllEntries(data))
            if (!(name == u"Tessaly.mdb" && is_copy_of_a_store(below(data, name))) &&
                !name.startsWith(u"Tessaly.mdb.tmp")) // of a copy that was broken off
                add("data/" + name);
    }

    void look_into_html(const QString &copy, const QString &original, const QString &shown)
    {
        for (const QString &name : AllEntries(copy)) {
            if (found.size() >= most)
                return;
            if (FolderExists(below(copy, name)) && FolderExists(below(original, name)))
                look_into_html(below(copy, name), below(original, name), below(shown, name));
            else if (!is_plain_file(below(copy, name)) || !is_plain_file(below(original, name)))
                add(below(shown, name));
        }
    }

    void add(const QString &stranger)
    {
        if (found.size() < most)
            found += stranger;
    }

    QStringList found;

private:
    const int most;
};

bool stands_there(const QString &path)
{
    return QFileInfo::exists(path) || QFileInfo(path).isSymLink();
}

}

QStringList strangers_in(const QString &folder, int most)
{
    stranger_search search(most);
    const QString data = below(folder, u"data");
    const QString html = below(folder, u"html");
    if (FolderExists(data))
        search.look_into_data(data);
    else if (stands_there(data))
        search.add("data");
    if (FolderExists(html))
        search.look_into_html(html, app_path(u"\\forms"), "html");
    else if (stands_there(html))
        search.add("html");
    return search.found;
}

QString time_of_store_in(const QString &folder)
{
    const QString copy = below(folder, u"data/Tessaly.mdb");
    if (!FolderExists(below(folder, u"data")) || !is_copy_of_a_store(copy))
        return {};
    return QLocale().toString(QFileInfo(copy).lastModified(), QLocale::ShortFormat);
}
