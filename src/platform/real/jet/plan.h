// A translated statement: what SQLite is given, what is bound to it from the statement's literals, what comes back.
#pragma once
#include "platform/real/jet/conversion.h"
#include "platform/real/jet/statement.h"
#include "platform/real/jet/syntax.h"
#include <array>
#include <map>

namespace jet {

struct binding {
    enum class source : quint8 { literal, now, today, moment };
    enum class form : quint8 { plain, to_column, day, pattern };

    source from = source::literal;
    form as = form::plain;
    bool negative = false;
    // The literal's number; of a moment month, day, year, hour, minute, second.
    std::array<qint32, 6> literals = {};
    target to = {};
};

struct result_column {
    QString name;
    ado::field_type type = ado::field_type::memo;
    int place = -1; // in the table; -1 of a computed one
    target to = {}; // what the column takes
};

struct plan {
    statement_kind kind = statement_kind::select;
    bool cacheable = true;
    QString table;                         // the one read or written, in its own spelling
    QByteArray sql;                        // of a keyed select: the row's key, then the columns
    std::vector<binding> bindings;         // one a parameter of sql
    int newest_row_place = -1;             // of an update of one column of the newest row by a literal: the column
    std::vector<QByteArray> before, after; // of a definition: the steps around sql, all or none

    // Selects only.
    std::vector<result_column> columns;
    bool keyed = false;     // each row stands for one of the table and can be read again
    bool sorted = false;    // the rows come in an order of their own, not in that of their keys
    QByteArray keys_sql;    // of a keyed one: the keys alone; when not sorted, as they are found the fastest
    QByteArray by_keys_sql; // of a keyed one: all rows of the table with keys from ?1 to ?2, each as sql gives it

    // Made when first needed, gone when the schema changes. Always reset, so that none holds a lock.
    prepared_statement prepared, keys, by_keys;
    std::map<std::vector<int>, prepared_statement> inserts, updates; // by the places of the columns written

    void release_statements()
    {
        prepared.reset();
        keys.reset();
        by_keys.reset();
        inserts.clear();
        updates.clear();
    }
};

}
