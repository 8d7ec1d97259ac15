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

constexpr int most_named = 8;

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
    void look_into_data(const QString &data)
    {
        for (const QString &name : AllEntries(data)) {
            const bool is_broken_off = name == u"Tessaly.mdb.tmp" || name == u"Tessaly.mdb.tmp-journal";
            if (!(name == u"Tessaly.mdb" && is_copy_of_a_store(below(data, name))) &&
                !(is_broken_off && is_plain_file(below(data, name))))
                add("data/" + name);
        }
    }

    // Only the folders of the forms are copied: a file beside them came from elsewhere.
    void look_into_html(const QString &html, const QString &forms)
    {
        for (const QString &name : AllEntries(html))
            if (FolderExists(below(html, name)) && FolderExists(below(forms, name)))
                look_into_form(below(html, name), below(forms, name), "html/" + name);
            else
                add("html/" + name);
    }

    void look_into_form(const QString &copy, const QString &original, const QString &shown)
    {
        for (const QString &name : AllEntries(copy)) {
            if (is_full())
                return;
            if (FolderExists(below(copy, name)) && FolderExists(below(original, name)))
                look_into_form(below(copy, name), below(original, name), below(shown, name));
            else if (!is_plain_file(below(copy, name)) || !is_plain_file(below(original, name)))
                add(below(shown, name));
        }
    }

    void add(const QString &stranger)
    {
        if (!is_full())
            found += stranger;
    }

    QStringList found;

private:
    bool is_full() const { return found.size() > most_named; }
};

bool stands_there(const QString &path)
{
    return QFileInfo::exists(path) || QFileInfo(path).isSymLink();
}

}

QString list_of(const QStringList &names)
{
    return names.size() <= most_named ? names.join(u'\n')
                                      : names.mid(0, most_named).join(u'\n') + QStringLiteral("\n...");
}

QStringList strangers_in(const QString &folder)
{
    stranger_search search;
    const QString data = below(folder, u"data");
    const QString html = below(folder, u"html");
    if (FolderExists(data))
        search.look_into_data(data);
    else if (stands_there(data))
        search.add("data");
    if (FolderExists(html))
        search.look_into_html(html, app_path(u"\\forms"));
    else if (stands_there(html))
        search.add("html");
    return search.found;
}

QStringList names_in_html(const QString &html)
{
    QStringList names;
    for (const QString &name : AllEntries(html))
        names += "html/" + name;
    return names;
}

QString time_of_store_in(const QString &folder)
{
    const QString copy = below(folder, u"data/Tessaly.mdb");
    if (!FolderExists(below(folder, u"data")) || !is_copy_of_a_store(copy))
        return {};
    return QLocale().toString(QFileInfo(copy).lastModified(), QLocale::ShortFormat);
}
