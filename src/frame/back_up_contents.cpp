#include "frame/back_up_contents.h"
#include "frame/back_up_folder.h"
#include "platform/app_folder.h"
#include "platform/folders.h"
#include "platform/store_file.h"
#include "platform/text_file.h"

#include <QDateTime>
#include <QLocale>

namespace {

constexpr int most_named = 8;

bool is_copy_of_a_store(const QString &path)
{
    return IsPlainFile(path) && store_file::is_of_ours(path);
}

class stranger_search {
public:
    void look_into_data(const QString &data)
    {
        for (const QString &name : AllEntries(data)) {
            const bool is_broken_off = name == u"Tessaly.mdb.tmp" || name == u"Tessaly.mdb.tmp-journal";
            if (!(name == u"Tessaly.mdb" && is_copy_of_a_store(below(data, name))) &&
                !(is_broken_off && IsPlainFile(below(data, name))))
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
            else if (!IsPlainFile(below(copy, name)) || !IsPlainFile(below(original, name)))
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
    else if (EntryExists(data))
        search.add("data");
    if (FolderExists(html))
        search.look_into_html(html, app_path(u"\\forms"));
    else if (EntryExists(html))
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
    return QLocale().toString(DateLastModified(copy), QLocale::ShortFormat);
}
