#include "platform/real/imap/folder_names.h"
#include "platform/real/imap/modified_utf7.h"
#include <algorithm>

namespace imap {

namespace {

constexpr qsizetype most_folders = 20000;

struct listed_folder {
    QByteArray name, delimiter;
    bool selectable = true;
};

// * LIST (\HasNoChildren) "." INBOX.Sub
listed_folder read_listed(const response &from, const answer &said)
{
    listed_folder found;
    words line(from, said.rest_at);
    if (line.opens())
        while (!line.at_end() && !line.closes()) {
            const QByteArrayView flag = line.atom();
            if (is(flag, "\\NOSELECT") || is(flag, "\\NONEXISTENT"))
                found.selectable = false;
            if (flag.isEmpty())
                line.skip();
        }
    found.delimiter = line.text().value_or(QByteArrayView()).toByteArray();
    found.name = line.text().value_or(QByteArrayView()).toByteArray();
    return found;
}

bool is_clean(QByteArrayView name)
{
    return std::none_of(name.begin(), name.end(), [](char letter) { return uchar(letter) < ' ' || letter == 0x7F; });
}

bool is_inbox(QByteArrayView name)
{
    return is(name, inbox_name);
}

}

// * NAMESPACE (("INBOX." ".")) NIL NIL: the first of our own.
void folder_names::ask_for_shape(connection &server)
{
    known.clear();
    prefix.clear();
    delimiter.clear();
    const auto read_namespace = [this](const response &from, const answer &said) {
        if (!is(said.name, "NAMESPACE") || !prefix.isEmpty() || !delimiter.isEmpty())
            return false;
        words line(from, said.rest_at);
        if (line.opens() && line.opens()) {
            prefix = line.text().value_or(QByteArrayView()).toByteArray();
            delimiter = line.text().value_or(QByteArrayView()).toByteArray();
        }
        return true;
    };
    const auto read_delimiter = [this](const response &from, const answer &said) {
        if (!is(said.name, "LIST") || !delimiter.isEmpty())
            return false;
        delimiter = read_listed(from, said).delimiter;
        return !delimiter.isEmpty();
    };
    if (server.can("NAMESPACE"))
        server.ask("NAMESPACE", read_namespace, {});
    server.ask("LIST \"\" \"\"", read_delimiter, {});
}

QByteArray folder_names::last_part(const QByteArray &folder) const
{
    return delimiter.isEmpty() ? folder : folder.sliced(folder.lastIndexOf(delimiter) + 1);
}

bool folder_names::may_be_name(QByteArrayView name) const
{
    return !name.isEmpty() && is_clean(name) && (delimiter.isEmpty() || !name.contains(delimiter));
}

// Where the Inbox cannot have folders of its own, or the server shows them beside it, those beside it are meant.
QByteArrayList folder_names::places_below(const QByteArray &folder) const
{
    QByteArrayList places;
    if (!delimiter.isEmpty())
        places.append(folder + delimiter);
    if (is_inbox(folder) && !places.contains(prefix))
        places.append(prefix);
    return places;
}

QByteArrayList folder_names::below(connection &server, const QByteArray &folder)
{
    for (const auto &[of, folders] : known)
        if (of == folder)
            return folders;
    QByteArrayList found;
    qsizetype heard = 0;
    for (const QByteArray &place : places_below(folder)) {
        const auto read = [&found, &heard, folder, place](const response &from, const answer &said) {
            if (!is(said.name, "LIST") || ++heard > most_folders)
                return false;
            const listed_folder one = read_listed(from, said);
            const bool is_below = one.name.size() > place.size() && is(one.name.first(place.size()), place.toUpper()) &&
                                  !is_inbox(one.name);
            const bool is_one = one.delimiter.isEmpty() ||
                                !one.name.sliced(qMin(place.size(), one.name.size())).contains(one.delimiter);
            if (is_below && is_one && one.selectable && is_clean(one.name) && !found.contains(one.name))
                found.append(one.name);
            return true;
        };
        server.ask("LIST \"\" " + quoted(place + '%'), read, {});
    }
    server.finish();
    known.append({folder, found});
    return found;
}

bool folder_names::try_create(connection &server, const QByteArray &folder, run_time_error &refusal)
{
    bool made = false;
    server.ask("CREATE " + quoted(folder), {}, [&](const answer &said) {
        made = said.said == status::ok || is(said.code, "ALREADYEXISTS");
        if (!made)
            refusal = server.refusal(said);
    });
    server.finish();
    if (made)
        server.ask("SUBSCRIBE " + quoted(folder), {}, {});
    return made;
}

QByteArray folder_names::add(connection &server, const QByteArray &folder, const QByteArray &name)
{
    QByteArrayList places = places_below(folder);
    if (is_inbox(folder) && places.size() > 1)
        std::reverse(places.begin(), places.end()); // where the server has its own folders
    run_time_error refusal{52, QStringLiteral("Bad file name or number: ") + QString::fromLatin1(name)};
    for (const QByteArray &place : places) {
        if (!try_create(server, place + name, refusal))
            continue;
        known.clear();
        return place + name;
    }
    throw refusal;
}

void folder_names::create(connection &server, const QByteArray &folder)
{
    server.ask("CREATE " + quoted(folder), {}, {});
    server.ask("SUBSCRIBE " + quoted(folder), {}, {});
    known.clear();
}

}
