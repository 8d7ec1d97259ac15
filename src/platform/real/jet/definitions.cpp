#include "platform/real/jet/definitions.h"
#include "platform/real/jet/failures.h"
#include "platform/reserved_words.h"
#include <algorithm>

namespace jet {

namespace {

class definition_writer {
public:
    definition_writer(const token_list &statement, const statement_syntax &parsed, const schema &tables,
                      expression_writer &writer, plan &into)
        : list(statement), syntax(parsed), known(tables), text(writer), made(into)
    {
        made.cacheable = false;
    }

    void run()
    {
        if (syntax.kind == statement_kind::select_into)
            select_into();
        else if (syntax.kind == statement_kind::add_column)
            add_column();
        else if (syntax.kind == statement_kind::drop_columns)
            drop_columns();
        else
            drop_table();
    }

private:
    void refuse_reserved(token_id which) const
    {
        if (list.tokens[which].kind == token_kind::bracketed)
            return;
        const QString name = text.name(which);
        if (reserved_words().contains(name, Qt::CaseInsensitive) ||
            reserved_query_words().contains(name, Qt::CaseInsensitive))
            fail_syntax(name);
    }

    // The copy keeps types, widths, the key with its numbers, and the indexes; SQLite's own "create table as" loses
    // them.
    void select_into()
    {
        const select_syntax &of = syntax.selects[syntax.select];
        refuse_reserved(of.into);
        const table &from = text.table_named(of.from);
        table copy;
        copy.name = text.name(of.into);
        copy.quoted = quoted_table(copy.name);
        if (known.find(copy.name))
            fail(ado::syntax_error, QStringLiteral("Table '") + copy.name + "' already exists.");
        copy.columns = copied_columns(of, from);
        made.table = copy.name;
        made.before.push_back(create_text(copy));
        write_rows(of, from, copy);
        for (const index &each : from.indexes)
            for (const column &column : copy.columns)
                if (column.quoted == each.quoted_column)
                    made.after.push_back("CREATE INDEX " + quoted_name(index_name(copy.name, column.name)) + " ON " +
                                         copy.quoted + '(' + column.quoted + ')');
    }

    std::vector<column> copied_columns(const select_syntax &of, const table &from)
    {
        if (of.all)
            return from.columns;
        std::vector<column> columns;
        text.enter(from);
        for (const node_id item : of.items) {
            const column *plain = text.plain_column(item);
            if (!plain)
                fail(ado::syntax_error, QStringLiteral("A new table can only be made of columns."));
            columns.push_back(*plain);
        }
        text.leave();
        return columns;
    }

    static QByteArray create_text(const table &of)
    {
        QByteArray columns;
        for (const column &each : of.columns)
            columns += (columns.isEmpty() ? "" : ", ") + definition(each);
        return "CREATE TABLE " + of.quoted + '(' + columns + ')';
    }

    void write_rows(const select_syntax &of, const table &from, const table &copy)
    {
        QByteArray names;
        for (const column &each : copy.columns)
            names += (names.isEmpty() ? "" : ",") + each.quoted;
        text.enter(from);
        text.sql = "INSERT INTO " + copy.quoted + '(' + names + ") SELECT " + names + " FROM " + from.quoted;
        text.where(of.where);
        text.order(of, from);
    }

    void add_column()
    {
        const table &of = text.table_named(syntax.table);
        column added;
        added.name = text.name(syntax.columns[0]);
        added.quoted = quoted_name(added.name);
        added.width = syntax.width;
        made.table = of.name;
        if (of.place_of(added.name) >= 0)
            fail(ado::column_exists,
                 QStringLiteral("Field '") + added.name + "' already exists in table '" + of.name + "'.");
        made.before.push_back("ALTER TABLE " + of.quoted + " ADD COLUMN " + definition(added));
    }

    void drop_columns()
    {
        const table &of = text.table_named(syntax.table);
        made.table = of.name;
        for (const token_id name : syntax.columns) {
            const column &dropped = text.column_named(name, of);
            if (dropped.type == ado::field_type::autonumber || syntax.columns.size() >= of.columns.size())
                fail(ado::column_exists, QStringLiteral("Cannot delete field '") + dropped.name + "'.");
            for (const index &each : of.indexes)
                if (each.quoted_column == dropped.quoted)
                    made.before.push_back("DROP INDEX " + quoted_name(each.name));
            made.before.push_back("ALTER TABLE " + of.quoted + " DROP COLUMN " + dropped.quoted);
        }
    }

    void drop_table()
    {
        const table &of = text.table_named(syntax.table);
        made.table = of.name;
        made.before.push_back("DROP TABLE " + of.quoted);
    }

    const token_list &list;
    const statement_syntax &syntax;
    const schema &known;
    expression_writer &text;
    plan &made;
};

}

void write_definition(const token_list &list, const statement_syntax &syntax, const schema &tables,
                      expression_writer &text, plan &into)
{
    definition_writer(list, syntax, tables, text, into).run();
}

}
