#include "platform/real/jet/newest_row.h"
#include "platform/real/jet/translator.h"
#include <algorithm>

namespace jet {

void newest_row::begin(const QString &name, qint64 row_key)
{
    table_name = name;
    key = row_key;
}

void newest_row::put(int place, ado::Value value)
{
    const auto found = std::find(places.begin(), places.end(), place);
    if (found != places.end()) {
        values[size_t(found - places.begin())] = std::move(value);
        return;
    }
    places.push_back(place);
    values.push_back(std::move(value));
}

void newest_row::drop()
{
    places.clear();
    values.clear();
}

void newest_row::forget_statements()
{
    changing = {};
    looking = {};
}

sqlite3_stmt *newest_row::take(sqlite3 *db, const schema &tables, binder &parameters)
{
    if (changing.table != table_name || changing.places != places) {
        const table *of = tables.find(table_name);
        changing = {table_name, places, of ? prepare(db, update_text(*of, places), true) : prepared_statement()};
    }
    parameters.start(changing.which.get(), values);
    for (size_t i = 0; i < values.size(); ++i)
        parameters.value(int(i) + 1, values[i]);
    parameters.number(int(values.size()) + 1, key);
    drop();
    return changing.which.get();
}

sqlite3_stmt *newest_row::key_statement(sqlite3 *db, const table &of)
{
    if (looking.table != of.name)
        looking = {of.name, {}, prepare(db, "SELECT max(" + of.row_key + ") FROM " + of.quoted, true)};
    return looking.which.get();
}

}
