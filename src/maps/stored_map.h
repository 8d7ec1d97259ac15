// A saved map as it stands in table_list_tbl, format_tbl and fcodes_tbl, for looking at; and its summary, map.txt.
// Nothing writes a map but map_writing.h.
#pragma once
#include <QString>
#include <QStringList>
#include <vector>

namespace maps {

struct stored_field {
    QString fname;
    QString fposition;    // "Line3"
    QString fignore;      // joined by "@@@"
    bool finclude = true; // the piece does not include the field's name
    int fcodegen = 0;
    QStringList descriptions; // of a field with fixed values; parallel to codes
    QStringList codes;
};

struct stored_map {
    QString seperator;
    std::vector<stored_field> fields; // in the table's order: the reverse of adding
};

QStringList maps_of_account(const QString &account_table); // their names
stored_map read_map(const QString &name);

// The text of map.txt. account_table heads it; code_field is the index of the field that "Yes" stands behind, -1 none.
QString map_summary(const QString &account_table, const std::vector<stored_field> &fields, int code_field);

}
