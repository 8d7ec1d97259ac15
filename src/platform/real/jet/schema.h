// The tables of the store as its own types see them, read from SQLite's declared types.
#pragma once
#include "platform/ado.h"
#include <QByteArray>
#include <QHash>
#include <vector>

struct sqlite3;

namespace jet {

struct column {
    QString name;      // in the table's own spelling
    QByteArray quoted; // ready for SQLite
    ado::field_type type = ado::field_type::text;
    int width = 0;     // of a text, in UTF-16 units; 0 without a limit
    bool whole = true; // of a number: no fractions
};

struct index {
    QByteArray quoted_column;
    QString name; // as SQLite has it
};

struct table {
    QString name;
    QByteArray quoted;
    std::vector<column> columns;
    std::vector<index> indexes; // those of one column
    QByteArray row_key;         // what addresses a row: the autonumber, else a hidden key
    int key_column = -1;        // the autonumber's place

    int place_of(QStringView column_name) const; // any case; -1 when there is none
};

class schema {
public:
    void load(sqlite3 *db);
    const table *find(QStringView name) const; // any case
    std::vector<QString> table_names() const;

private:
    QHash<QString, table> tables; // by folded name
};

QByteArray quoted_name(QStringView name); // of a column, or of an index as SQLite has it

// A table may be called "sqlite_x", which SQLite keeps for itself: such a one lies in the file as "~sqlite_x".
QByteArray quoted_table(QStringView name);
QString index_name(const QString &table, const QString &column);

// The definition of a column of a new table or of an added one.
QByteArray definition(const column &of);

}
