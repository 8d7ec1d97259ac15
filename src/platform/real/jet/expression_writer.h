// Writes expressions and selects of the dialect as SQLite's, and notes what is to be bound to them.
#pragma once
#include "platform/real/jet/lexer.h"
#include "platform/real/jet/plan.h"
#include "platform/real/jet/schema.h"

namespace jet {

enum class value_kind : quint8 { null, text, number, date, flag };

value_kind kind_of(ado::field_type type);

class expression_writer {
public:
    expression_writer(const token_list &statement, const statement_syntax &parsed, const schema &tables, plan &into)
        : list(statement), syntax(parsed), known(tables), out(into)
    {
    }

    // Columns are looked for in the innermost table first.
    void enter(const table &from) { scopes.push_back(&from); }
    void leave() { scopes.pop_back(); }

    QString name(token_id which) const { return list.view(list.tokens[which]).toString(); }
    const table &table_named(token_id which) const;                    // unknown_table
    const column &column_named(token_id which, const table &of) const; // unknown_column

    void where(node_id which);                                  // " WHERE ..", or nothing
    void order(const select_syntax &select, const table &from); // " ORDER BY .."
    value_kind value(node_id which);
    void assigned(node_id which, const column &to); // converted to the column's type
    void converted_column(const column &from, const column &to);
    bool has_aggregate(node_id which) const;
    const column *plain_column(node_id which) const; // nullptr when the node is something else

    QByteArray sql;

private:
    const node &at(node_id which) const { return syntax.nodes[which]; }
    const column *find(token_id which) const;
    bool is_literal(node_id which, bool &negative, token_id &literal) const;
    void bind(const binding &what);
    void literal(token_id which, binding::form as, bool negative = false, const target &to = {});

    void condition(node_id which);
    void chain(const node &of);
    void joined(const std::vector<node_id> &parts, size_t first, size_t last, const char *word);
    std::vector<node_id> gather_numbers(const node &of, QByteArray &list_written);
    void received_at(const node &of);

    value_kind compare(const node &of);
    void like(const node &of);
    void like_side(node_id which, bool pattern);
    void in_list(const node &of);
    void in_select(const node &of);
    value_kind sub_select(qint32 which);
    value_kind arithmetic(const node &of);
    value_kind function(const node &of);
    value_kind column_value_of(const node &of);

    const token_list &list;
    const statement_syntax &syntax;
    const schema &known;
    plan &out;
    std::vector<const table *> scopes;
};

}
