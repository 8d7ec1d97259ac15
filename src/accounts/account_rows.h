// The accounts in the store: their list, and adding, changing and deleting one. Each throws what the store throws, and
// what was written before that stays. What must be right first: account_checks.h. In memory: frame/account_list.h.
#pragma once
#include <QString>
#include <QStringList>
#include <optional>

namespace accounts {

QStringList query_list(); // what query_c shows: "Select query" and the names

struct entry {
    QString query, email;
    bool operator==(const entry &) const = default;
};
std::optional<entry> find(const QString &query); // nothing: another screen has renamed or deleted it since
QString not_there(const QString &query);         // what to say then

// Says "New Account successfully added" between the row and the table.
void add(const QString &query, const QString &email);

// The account goes on filling the table that it has, whatever it is called from now on; the table of the (new) name is
// made anew all the same.
void change(const QString &former, const QString &query, const QString &email);

// The name and the address alone.
void rename(const QString &former, const QString &query, const QString &email);

// Its table and its maps stay. False: it is the last account, which cannot be deleted; it has said so.
bool remove(const QString &query);

}
