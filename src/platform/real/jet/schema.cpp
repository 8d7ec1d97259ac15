#include "platform/real/jet/schema.h"
#include "platform/letter_case.h"
#include "platform/real/jet/failures.h"
#include <algorithm>
#include <sqlite3.h>

namespace jet {

namespace {

bool needs_sign(QStringView table)
{
    return table.startsWith(u'~') || table.startsWith(u"sqlite_", Qt::CaseInsensitive);
}

int width_in(const QString &declared)
{
    const qsizetype open = declared.indexOf(u'(');
    return open < 0 ? 0 : declared.mid(open + 1, declared.indexOf(u')') - open - 1).toInt();
}

void read_type(const QString &declared, bool is_key, column &into)
{
    using ado::field_type;
    if (is_key && declared == u"INTEGER") {
        into.type = field_type::autonumber;
    } else if (declared.startsWith(u"YESNO")) {
        into.type = field_type::flag;
    } else if (declared.startsWith(u"DATE")) {
        into.type = field_type::date;
    } else if (declared.contains(u"TEXT") || declared.contains(u"CHAR") || declared.isEmpty()) {
        into.width = width_in(declared);
        into.type = into.width > 0 ? field_type::text : field_type::memo;
    } else {
        into.type = field_type::number;
        into.whole = declared.contains(u"INT");
    }
}

QString text_of(sqlite3_stmt *row, int place)
{
    return QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_column_text(row, place)),
                             sqlite3_column_bytes(row, place));
}

// Runs a query and hands over each row.
template <typename Take>
void each_row(sqlite3 *db, const char *sql, Take take)
{
    sqlite3_stmt *rows = nullptr;
    int result = sqlite3_prepare_v2(db, sql, -1, &rows, nullptr);
    while (result == SQLITE_OK || result == SQLITE_ROW) {
        result = sqlite3_step(rows);
        if (result == SQLITE_ROW)
            take(rows);
    }
    const run_time_error failure = result == SQLITE_DONE ? run_time_error{} : failure_of(db, result);
    sqlite3_finalize(rows);
    if (result != SQLITE_DONE)
        throw run_time_error(failure);
}

// A user's column may be called rowid; the hidden key then answers to another of its names.
QByteArray hidden_key(const table &of)
{
    for (const char *name : {"rowid", "_rowid_", "oid"})
        if (of.place_of(QString::fromLatin1(name)) < 0)
            return name;
    fail(ado::store_failure, QStringLiteral("No key is left to address the rows of '") + of.name + "'.");
}

}

int table::place_of(QStringView column_name) const
{
    for (size_t i = 0; i < columns.size(); ++i)
        if (columns[i].name.size() == column_name.size() && compare_case_blind(columns[i].name, column_name) == 0)
            return int(i);
    return -1;
}

void schema::load(sqlite3 *db)
{
    tables.clear();
    each_row(db,
             "SELECT m.name, c.name, upper(c.type), c.pk FROM sqlite_master m, pragma_table_info(m.name) c "
             "WHERE m.type='table' AND m.name NOT LIKE 'sqlite\\_%' ESCAPE '\\' ORDER BY m.rowid, c.cid",
             [this](sqlite3_stmt *row) {
                 QString name = text_of(row, 0);
                 if (name.startsWith(u'~'))
                     name.remove(0, 1);
                 table &into = tables[fold_case(name)];
                 into.name = name;
                 column made;
                 made.name = text_of(row, 1);
                 made.quoted = quoted_name(made.name);
                 read_type(text_of(row, 2), sqlite3_column_int(row, 3) == 1, made);
                 if (made.type == ado::field_type::autonumber)
                     into.key_column = int(into.columns.size());
                 into.columns.push_back(made);
             });
    for (table &made : tables) {
        made.quoted = quoted_table(made.name);
        made.row_key = made.key_column >= 0 ? made.columns[made.key_column].quoted : hidden_key(made);
    }
    each_row(db,
             "SELECT m.tbl_name, m.name, min(i.name) FROM sqlite_master m, pragma_index_info(m.name) i "
             "WHERE m.type='index' GROUP BY m.tbl_name, m.name HAVING count(*)=1",
             [this](sqlite3_stmt *row) {
                 QString name = text_of(row, 0);
                 if (name.startsWith(u'~'))
                     name.remove(0, 1);
                 tables[fold_case(name)].indexes.push_back({quoted_name(text_of(row, 2)), text_of(row, 1)});
             });
}

const table *schema::find(QStringView name) const
{
    const auto found = tables.constFind(fold_case(name));
    return found == tables.constEnd() ? nullptr : &*found;
}

std::vector<QString> schema::table_names() const
{
    std::vector<QString> names;
    for (const table &each : tables)
        names.push_back(each.name);
    std::sort(names.begin(), names.end());
    return names;
}

QByteArray quoted_name(QStringView name)
{
    return '"' + name.toUtf8().replace('"', "\"\"") + '"';
}

QByteArray quoted_table(QStringView name)
{
    return needs_sign(name) ? quoted_name(QString(u'~' + name.toString())) : quoted_name(name);
}

QString index_name(const QString &table, const QString &column)
{
    return "~index:" + table + u':' + column;
}

QByteArray definition(const column &of)
{
    switch (of.type) {
    case ado::field_type::text: {
        const QByteArray width = QByteArray::number(of.width);
        return of.quoted + " TEXT(" + width + ") COLLATE NOCASE CHECK(length(" + of.quoted + ")<=" + width + ")";
    }
    case ado::field_type::memo:
        return of.quoted + " LONGTEXT COLLATE NOCASE";
    case ado::field_type::number:
        return of.quoted + (of.whole ? " INTEGER" : " DOUBLE");
    case ado::field_type::date:
        return of.quoted + " DATETIME";
    case ado::field_type::flag:
        return of.quoted + " YESNO NOT NULL DEFAULT 0 CHECK(" + of.quoted + " IN (0,-1))";
    case ado::field_type::autonumber:
        return of.quoted + " INTEGER PRIMARY KEY AUTOINCREMENT";
    }
    return {};
}

}
