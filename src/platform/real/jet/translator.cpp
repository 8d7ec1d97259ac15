#include "platform/real/jet/translator.h"
#include "platform/real/jet/definitions.h"
#include "platform/real/jet/expression_writer.h"
#include "platform/real/jet/failures.h"
#include "platform/real/jet/parser.h"
#include <algorithm>

namespace jet {

namespace {

class statement_writer {
public:
    statement_writer(const token_list &statement, const statement_syntax &parsed, const schema &tables)
        : list(statement),
          syntax(parsed),
          known(tables),
          made(std::make_shared<plan>()),
          text(list, syntax, known, *made)
    {
        made->kind = syntax.kind;
    }

    std::shared_ptr<plan> run()
    {
        switch (syntax.kind) {
        case statement_kind::select:
            select();
            break;
        case statement_kind::insert:
            insert();
            break;
        case statement_kind::insert_select:
            insert_select();
            break;
        case statement_kind::update:
            update();
            break;
        case statement_kind::delete_:
            delete_rows();
            break;
        default:
            write_definition(list, syntax, known, text, *made);
            break;
        }
        if (!text.sql.isEmpty())
            made->sql = text.sql;
        if (list.tokens.size() > token_list::longest_shape)
            made->cacheable = false;
        return made;
    }

private:
    // --- select
    void select()
    {
        const select_syntax &of = syntax.selects[syntax.select];
        const table &from = text.table_named(of.from);
        made->table = from.name;
        text.enter(from);
        made->keyed = std::all_of(of.items.begin(), of.items.end(),
                                  [this](node_id item) { return text.plain_column(item) != nullptr; });
        text.sql = "SELECT ";
        if (made->keyed)
            text.sql += from.row_key + ',';
        if (of.all)
            all_columns(from);
        else
            items(of);
        const QByteArray behind = " FROM " + from.quoted;
        if (made->keyed)
            made->by_keys_sql = text.sql + behind + " WHERE " + from.row_key + ">=?1 AND " + from.row_key +
                                "<=?2 ORDER BY " + from.row_key;
        text.sql += behind;
        const qsizetype rows = text.sql.size();
        text.where(of.where);
        made->sorted = made->keyed && sorts(of, from);
        if (made->keyed && !made->sorted) // an index may hold the keys close together, though in its own order
            made->keys_sql = "SELECT " + from.row_key + behind + text.sql.mid(rows);
        if (!aggregated(of))
            text.order(of, from);
        if (made->sorted)
            made->keys_sql = "SELECT " + from.row_key + behind + text.sql.mid(rows);
    }

    void all_columns(const table &from)
    {
        for (size_t i = 0; i < from.columns.size(); ++i) {
            const column &each = from.columns[i];
            text.sql += (i > 0 ? "," : "") + each.quoted;
            made->columns.push_back({each.name, each.type, int(i), target_of(each)});
        }
    }

    void items(const select_syntax &of)
    {
        const table &from = text.table_named(of.from);
        int unnamed = 1000;
        for (size_t i = 0; i < of.items.size(); ++i) {
            if (i > 0)
                text.sql += ',';
            if (const column *plain = text.plain_column(of.items[i])) {
                text.sql += plain->quoted;
                made->columns.push_back({plain->name, plain->type, from.place_of(plain->name), target_of(*plain)});
                continue;
            }
            const value_kind kind = text.value(of.items[i]);
            made->columns.push_back({QStringLiteral("Expr") + QString::number(unnamed++), type_of(kind), -1, {}});
        }
    }

    static ado::field_type type_of(value_kind kind)
    {
        switch (kind) {
        case value_kind::number:
            return ado::field_type::number;
        case value_kind::date:
            return ado::field_type::date;
        case value_kind::flag:
            return ado::field_type::flag;
        default:
            return ado::field_type::memo;
        }
    }

    bool aggregated(const select_syntax &of) const
    {
        return std::any_of(of.items.begin(), of.items.end(), [this](node_id item) { return text.has_aggregate(item); });
    }

    // Rows in the order of their key come without sorting, so they can be read as they are found.
    bool sorts(const select_syntax &of, const table &from) const
    {
        if (of.order.empty())
            return false;
        const order_item &first = of.order[0];
        return first.descending || from.place_of(text.name(first.column)) != from.key_column;
    }

    // --- changes
    std::vector<const column *> named_columns(const table &into) const
    {
        std::vector<const column *> columns;
        for (const token_id name : syntax.columns) {
            const column *next = &text.column_named(name, into);
            if (std::find(columns.begin(), columns.end(), next) != columns.end())
                fail(ado::syntax_error, QStringLiteral("Duplicate output destination '") + next->name + "'.");
            columns.push_back(next);
        }
        return columns;
    }

    std::vector<const column *> filled_columns(const table &into, size_t values) const
    {
        std::vector<const column *> columns = named_columns(into);
        if (!syntax.columns_named)
            for (const column &each : into.columns)
                columns.push_back(&each);
        if (columns.size() != values)
            fail(ado::syntax_error, QStringLiteral("Number of query values and destination fields are not the same."));
        return columns;
    }

    void start_insert(const table &into, const std::vector<const column *> &columns)
    {
        made->table = into.name;
        text.sql = "INSERT INTO " + into.quoted + '(';
        for (const column *each : columns)
            text.sql += (each == columns[0] ? "" : ",") + each->quoted;
        text.sql += ')';
    }

    void insert()
    {
        const table &into = text.table_named(syntax.table);
        const auto columns = filled_columns(into, syntax.values.size());
        start_insert(into, columns);
        text.sql += " VALUES(";
        for (size_t i = 0; i < columns.size(); ++i) {
            if (i > 0)
                text.sql += ',';
            text.assigned(syntax.values[i], *columns[i]);
        }
        text.sql += ')';
    }

    void insert_select()
    {
        const select_syntax &of = syntax.selects[syntax.select];
        const table &into = text.table_named(syntax.table);
        const table &from = text.table_named(of.from);
        const auto columns = filled_columns(into, of.all ? from.columns.size() : of.items.size());
        start_insert(into, columns);
        text.enter(from);
        text.sql += " SELECT ";
        for (size_t i = 0; i < columns.size(); ++i) {
            if (i > 0)
                text.sql += ',';
            if (of.all)
                text.converted_column(from.columns[i], *columns[i]);
            else
                text.assigned(of.items[i], *columns[i]);
        }
        text.sql += " FROM " + from.quoted;
        text.where(of.where);
        if (!aggregated(of))
            text.order(of, from);
    }

    void update()
    {
        const table &of = text.table_named(syntax.table);
        const auto columns = named_columns(of);
        made->table = of.name;
        text.enter(of);
        text.sql = "UPDATE " + of.quoted + " SET ";
        for (size_t i = 0; i < columns.size(); ++i) {
            text.sql += (i > 0 ? "," : "") + columns[i]->quoted + '=';
            text.assigned(syntax.values[i], *columns[i]);
        }
        const bool by_one_literal = columns.size() == 1 && of.place_of(columns[0]->name) != of.key_column &&
                                    made->bindings.size() == 1 && made->bindings[0].from == binding::source::literal &&
                                    made->bindings[0].as == binding::form::to_column;
        text.where(syntax.where);
        if (by_one_literal && made->bindings.size() == 1 && means_newest_row(of))
            made->newest_row_place = of.place_of(columns[0]->name);
    }

    bool is_key(node_id which, const table &of) const
    {
        const node &leaf = syntax.nodes[which];
        return leaf.kind == node_kind::column && of.place_of(text.name(leaf.name)) == of.key_column;
    }

    // where key=(select max(key) from this table)
    bool means_newest_row(const table &of) const
    {
        if (syntax.where == nothing || of.key_column < 0)
            return false;
        const node &test = syntax.nodes[syntax.where];
        if (test.kind != node_kind::compare || test.symbol != u'=' || !is_key(test.parts[0], of))
            return false;
        const node &right = syntax.nodes[test.parts[1]];
        if (right.kind != node_kind::select)
            return false;
        const select_syntax &newest = syntax.selects[right.select];
        if (newest.all || newest.items.size() != 1 || newest.where != nothing || newest.into != nothing)
            return false;
        const node &item = syntax.nodes[newest.items[0]];
        return &text.table_named(newest.from) == &of && item.kind == node_kind::max_of && is_key(item.parts[0], of);
    }

    void delete_rows()
    {
        const table &of = text.table_named(syntax.table);
        made->table = of.name;
        text.enter(of);
        text.sql = "DELETE FROM " + of.quoted;
        text.where(syntax.where);
    }

    const token_list &list;
    const statement_syntax &syntax;
    const schema &known;
    std::shared_ptr<plan> made;
    expression_writer text;
};

}

std::shared_ptr<plan> translate(const token_list &list, const schema &tables)
{
    const statement_syntax syntax = parse(list);
    return statement_writer(list, syntax, tables).run();
}

QByteArray insert_text(const table &into, const std::vector<int> &places)
{
    if (places.empty())
        return "INSERT INTO " + into.quoted + " DEFAULT VALUES";
    QByteArray names, values;
    for (const int place : places) {
        names += (names.isEmpty() ? "" : ",") + into.columns[place].quoted;
        values += values.isEmpty() ? "?" : ",?";
    }
    return "INSERT INTO " + into.quoted + '(' + names + ") VALUES(" + values + ')';
}

QByteArray update_text(const table &of, const std::vector<int> &places)
{
    QByteArray text = "UPDATE " + of.quoted + " SET ";
    for (const int place : places)
        text += (place == places[0] ? "" : ",") + of.columns[place].quoted + "=?";
    return text + " WHERE " + of.row_key + "=?";
}

}
