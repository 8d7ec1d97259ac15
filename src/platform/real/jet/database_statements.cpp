// Running translated statements: binding their literals, changing rows, definitions. Reading: database_reading.cpp.
#include "platform/clock.h"
#include "platform/letter_case.h"
#include "platform/real/jet/database.h"
#include "platform/real/jet/dates.h"
#include "platform/real/jet/failures.h"
#include "platform/real/jet/like.h"
#include "platform/real/jet/translator.h"
#include <algorithm>
#include <cstdio>
#include <sqlite3.h>

namespace jet {

namespace {

// Undoes what was done since, unless kept.
class savepoint {
public:
    explicit savepoint(sqlite3 *of) : db(of) { sqlite3_exec(db, "SAVEPOINT definition", nullptr, nullptr, nullptr); }
    ~savepoint()
    {
        if (!kept)
            sqlite3_exec(db, "ROLLBACK TO definition; RELEASE definition", nullptr, nullptr, nullptr);
    }
    void keep()
    {
        kept = true;
        sqlite3_exec(db, "RELEASE definition", nullptr, nullptr, nullptr);
    }

private:
    sqlite3 *db;
    bool kept = false;
};

// Where the columns lie that a recordset was opened with: a definition may have moved them since.
std::vector<int> places_now(const plan &opened, const std::vector<int> &places, const table &now)
{
    std::vector<int> found;
    for (const int place : places) {
        const auto column = std::find_if(opened.columns.begin(), opened.columns.end(),
                                         [place](const result_column &each) { return each.place == place; });
        found.push_back(now.place_of(column->name));
        if (found.back() < 0)
            fail_no_column(column->name);
    }
    return found;
}

ado::Value literal_number(QStringView text, bool negative)
{
    bool whole = false;
    const qint64 number = text.toLongLong(&whole);
    if (whole)
        return ado::Value(negative ? -number : number);
    bool good = false;
    const double fraction = text.toDouble(&good);
    if (!good)
        fail_syntax(text.toString());
    return ado::Value(negative ? -fraction : fraction);
}

}

const table &database::table_of(const plan &which) const
{
    const table *found = tables.find(which.table);
    if (!found)
        fail(ado::unknown_table, QStringLiteral("The table '") + which.table + "' is gone.");
    return *found;
}

std::shared_ptr<plan> database::plan_of_tokens()
{
    const bool short_enough = tokens.tokens.size() <= token_list::longest_shape;
    if (short_enough)
        if (auto known = plans.find(tokens.shape))
            return known;
    auto made = translate(tokens, tables);
    if (short_enough && made->cacheable)
        plans.keep(tokens.shape, made);
    return made;
}

std::shared_ptr<plan> database::plan_of(QStringView sql)
{
    raise_deferred();
    need_open();
    load_schema_when_stale();
    lex(sql, tokens);
    return plan_of_tokens();
}

sqlite3_stmt *database::prepared(plan &of)
{
    if (!of.prepared)
        of.prepared = prepare(db, of.sql, of.cacheable);
    return of.prepared.get();
}

// --- binding

void database::bind(const plan &of, sqlite3_stmt *to)
{
    parameters.start(to, tokens.sql.size());
    for (size_t i = 0; i < of.bindings.size(); ++i)
        bind_one(of.bindings[i], int(i) + 1);
}

void database::bind_one(const binding &what, int place)
{
    switch (what.from) {
    case binding::source::literal:
        return bind_literal(what, place);
    case binding::source::now:
        return parameters.date(place, ::now());
    case binding::source::today:
        return parameters.date(place, QDateTime(::today(), QTime(0, 0), Qt::UTC));
    case binding::source::moment:
        return bind_moment(what, place);
    }
}

void database::bind_literal(const binding &what, int place)
{
    const token &literal = tokens.literal(what.literals[0]);
    if (literal.kind == token_kind::number) {
        const ado::Value number = literal_number(tokens.view(literal), what.negative);
        return parameters.value(place, what.as == binding::form::to_column ? convert(number, what.to) : number);
    }
    const bool as_it_is = what.as == binding::form::plain ||
                          (what.as == binding::form::to_column &&
                           (what.to.type == ado::field_type::text || what.to.type == ado::field_type::memo));
    if (as_it_is && !literal.doubled) {
        if (what.as == binding::form::to_column && what.to.width > 0 && literal.length > what.to.width)
            fail_too_long();
        return parameters.text(place, tokens.view(literal));
    }
    const QString text = tokens.literal_text(what.literals[0]);
    if (what.as == binding::form::to_column)
        return parameters.value(place, convert(ado::Value(text), what.to));
    if (what.as == binding::form::day) {
        const auto date = read_date(text);
        if (!date)
            fail_criteria();
        return parameters.date(place, QDateTime(date->date(), QTime(0, 0), Qt::UTC));
    }
    if (what.as == binding::form::pattern && !pattern_is_whole(text))
        fail(ado::syntax_error, QStringLiteral("Invalid pattern string."));
    parameters.text(place, text);
}

// Six numbers that are no date find no row, as the six comparisons beside this one do.
void database::bind_moment(const binding &what, int place)
{
    int parts[6] = {};
    for (size_t i = 0; i < 6; ++i)
        parts[i] = tokens.view(tokens.literal(what.literals[i])).toInt();
    const QDate date(parts[2], parts[0], parts[1]);
    const QTime time(parts[3], parts[4], parts[5]);
    if (date.isValid() && time.isValid())
        parameters.date(place, QDateTime(date, time, Qt::UTC));
    else
        parameters.null(place);
}

// --- changing

qint64 database::execute(QStringView sql)
{
    raise_deferred();
    load_schema_when_stale();
    if (const auto known = repeats.find(sql, tokens))
        return put_off(*known);
    const auto of = plan_of(sql);
    if (of->kind == statement_kind::select) {
        read(*of, sql, part::rows, [](sqlite3_stmt *) { return true; });
        return 0;
    }
    if (of->newest_row_place >= 0) {
        repeats.keep(tokens, of);
        return put_off(*of);
    }
    const bool changes_rows = of->before.empty() && of->kind != statement_kind::select_into;
    return changes_rows ? change(*of) : define(*of);
}

void database::tell_recordsets(const QString &table)
{
    for (open_rows *rows : open_recordsets)
        rows->before_change(table);
}

qint64 database::step_change(sqlite3_stmt *which)
{
    const reset_after resets(which);
    check(sqlite3_step(which));
    return sqlite3_changes64(db);
}

qint64 database::change(plan &of)
{
    begin_write();
    if (of.kind == statement_kind::update || of.kind == statement_kind::delete_)
        tell_recordsets(of.table);
    sqlite3_stmt *which = prepared(of);
    bind(of, which);
    return step_change(which);
}

// The number of rows changed: none in an empty table.
qint64 database::put_off(plan &of)
{
    const token &literal = tokens.literal(of.bindings[0].literals[0]);
    const ado::Value given = literal.kind == token_kind::number
                                 ? literal_number(tokens.view(literal), of.bindings[0].negative)
                                 : ado::Value(tokens.literal_text(of.bindings[0].literals[0]));
    ado::Value value = convert(given, of.bindings[0].to);
    if (!newest.is_of(of.table)) {
        begin_write();
        tell_recordsets(of.table);
        sqlite3_stmt *key = newest.key_statement(db, table_of(of));
        const reset_after resets(key);
        const int result = sqlite3_step(key);
        check(result);
        if (result != SQLITE_ROW || sqlite3_column_type(key, 0) == SQLITE_NULL)
            return 0;
        newest.begin(of.table, sqlite3_column_int64(key, 0));
    }
    ++changes_begun;
    newest.put(of.newest_row_place, std::move(value));
    return 1;
}

void database::write_newest_row()
{
    if (newest.waits())
        step_change(newest.take(db, tables, parameters));
}

qint64 database::define(plan &of)
{
    begin_write();
    tell_recordsets(of.table);
    stale = true;
    for (open_rows *rows : open_recordsets)
        rows->release_statements();
    savepoint steps(db);
    for (const QByteArray &step : of.before)
        run(step);
    qint64 rows = 0;
    if (!of.sql.isEmpty()) {
        const prepared_statement copying = prepare(db, of.sql, false);
        bind(of, copying.get());
        rows = step_change(copying.get());
    }
    for (const QByteArray &step : of.after)
        run(step);
    steps.keep();
    return rows;
}

qint64 database::insert(plan &through, const std::vector<int> &places, const std::vector<ado::Value> &values)
{
    begin_write();
    prepared_statement &which = through.inserts[places];
    if (!which) {
        const table &of = table_of(through);
        which = prepare(db, insert_text(of, places_now(through, places, of)), true);
    }
    parameters.start(which.get(), values);
    for (size_t i = 0; i < values.size(); ++i)
        parameters.value(int(i) + 1, values[i]);
    step_change(which.get());
    return sqlite3_last_insert_rowid(db);
}

void database::update(plan &through, qint64 key, const std::vector<int> &places, const std::vector<ado::Value> &values)
{
    begin_write();
    tell_recordsets(through.table);
    prepared_statement &which = through.updates[places];
    if (!which) {
        const table &of = table_of(through);
        which = prepare(db, update_text(of, places_now(through, places, of)), true);
    }
    parameters.start(which.get(), values);
    for (size_t i = 0; i < values.size(); ++i)
        parameters.value(int(i) + 1, values[i]);
    parameters.number(int(values.size()) + 1, key);
    step_change(which.get());
}

void database::delete_row(plan &through, qint64 key)
{
    begin_write();
    tell_recordsets(through.table);
    const table &of = table_of(through);
    const prepared_statement which = prepare(db, "DELETE FROM " + of.quoted + " WHERE " + of.row_key + "=?1", false);
    sqlite3_bind_int64(which.get(), 1, key);
    step_change(which.get());
}

}
