#include "platform/real/jet/parser.h"
#include "platform/real/jet/failures.h"

namespace jet {

namespace {

constexpr int deepest_nesting = 150; // well below SQLite's own limit and the stack's

class reader {
public:
    explicit reader(const token_list &tokens) : list(tokens) {}

    statement_syntax run()
    {
        if (take("select"))
            select_statement();
        else if (take("insert"))
            insert_statement();
        else if (take("update"))
            update_statement();
        else if (take("delete"))
            delete_statement();
        else if (take("alter"))
            alter_statement();
        else if (take("drop"))
            drop_statement();
        else
            refuse();
        if (here().kind != token_kind::end)
            refuse();
        return std::move(out);
    }

private:
    // --- tokens
    const token &here() const { return list.tokens[at]; }
    const token &behind() const { return list.tokens[std::min(at + 1, list.tokens.size() - 1)]; }

    [[noreturn]] void refuse() const { fail_syntax(list.sql.mid(here().start).toString()); }

    bool is(const char *word) const
    {
        return here().kind == token_kind::word && is_word(list.view(here()), QLatin1String(word));
    }

    bool take(const char *word)
    {
        if (!is(word))
            return false;
        ++at;
        return true;
    }

    void need(const char *word)
    {
        if (!take(word))
            refuse();
    }

    bool is(char16_t symbol) const { return here().kind == token_kind::symbol && here().symbol == symbol; }

    bool take(char16_t symbol)
    {
        if (!is(symbol))
            return false;
        ++at;
        return true;
    }

    void need(char16_t symbol)
    {
        if (!take(symbol))
            refuse();
    }

    token_id name()
    {
        if (here().kind != token_kind::word && here().kind != token_kind::bracketed)
            refuse();
        return token_id(at++);
    }

    node_id add(node made)
    {
        out.nodes.push_back(std::move(made));
        return node_id(out.nodes.size()) - 1;
    }

    // --- statements
    void select_statement()
    {
        out.select = select_body();
        if (out.selects[out.select].into != nothing) {
            out.kind = statement_kind::select_into;
            out.table = out.selects[out.select].into;
        }
    }

    void insert_statement()
    {
        out.kind = statement_kind::insert;
        if (!take("into"))
            fail(ado::syntax_error, QStringLiteral("Syntax error in INSERT INTO statement."));
        out.table = name();
        if (take(u'(')) {
            out.columns_named = true;
            do
                out.columns.push_back(name());
            while (take(u','));
            need(u')');
        }
        if (take("select")) {
            out.kind = statement_kind::insert_select;
            out.select = select_body();
            return;
        }
        need("values");
        need(u'(');
        do
            out.values.push_back(condition());
        while (take(u','));
        need(u')');
    }

    void update_statement()
    {
        out.kind = statement_kind::update;
        out.table = name();
        need("set");
        do {
            out.columns.push_back(name());
            need(u'=');
            out.values.push_back(condition());
        } while (take(u','));
        out.where = where_clause();
    }

    void delete_statement()
    {
        out.kind = statement_kind::delete_;
        take(u'*');
        need("from");
        out.table = name();
        out.where = where_clause();
    }

    void alter_statement()
    {
        need("table");
        out.table = name();
        if (take("add")) {
            out.kind = statement_kind::add_column;
            if (is("column") && !is_type_next())
                ++at;
            out.columns.push_back(name());
            need("text");
            need(u'(');
            if (here().kind != token_kind::number)
                refuse();
            out.width = list.view(here()).toInt();
            if (out.width < 1 || out.width > 255)
                fail(ado::syntax_error, QStringLiteral("Size of field is too long."));
            ++at;
            return need(u')');
        }
        need("drop");
        out.kind = statement_kind::drop_columns;
        if (is("column") && (behind().kind == token_kind::word || behind().kind == token_kind::bracketed))
            ++at;
        do
            out.columns.push_back(name());
        while (take(u','));
    }

    // "add column text(255)" adds a column called column.
    bool is_type_next() const
    {
        return behind().kind == token_kind::word && is_word(list.view(behind()), QLatin1String("text")) &&
               at + 2 < list.tokens.size() && list.tokens[at + 2].symbol == u'(';
    }

    void drop_statement()
    {
        out.kind = statement_kind::drop_table;
        need("table");
        out.table = name();
    }

    node_id where_clause() { return take("where") ? condition() : nothing; }

    // Behind the word SELECT.
    qint32 select_body()
    {
        descend();
        select_syntax made;
        if (take(u'*'))
            made.all = true;
        else
            do
                made.items.push_back(condition());
            while (take(u','));
        if (take("into"))
            made.into = name();
        need("from");
        made.from = name();
        made.where = where_clause();
        if (take("order"))
            order_by(made);
        --depth;
        out.selects.push_back(std::move(made));
        return qint32(out.selects.size()) - 1;
    }

    void order_by(select_syntax &made)
    {
        need("by");
        do {
            order_item item{name(), false};
            if (take("desc"))
                item.descending = true;
            else
                take("asc");
            made.order.push_back(item);
        } while (take(u','));
    }

    qint32 sub_select()
    {
        const qint32 made = select_body();
        if (out.selects[made].into != nothing)
            refuse();
        return made;
    }

    // --- expressions
    void descend()
    {
        if (++depth > deepest_nesting)
            fail(ado::syntax_error, QStringLiteral("Expression too complex."));
    }

    node_id condition() { return chain(node_kind::or_, "or"); }

    // Long chains are one flat node: the closing update of the mail parser has tens of thousands of terms.
    node_id chain(node_kind kind, const char *word)
    {
        const auto term = [&] { return kind == node_kind::or_ ? chain(node_kind::and_, "and") : inversion(); };
        const node_id first = term();
        if (!is(word))
            return first;
        node made{kind};
        made.parts.push_back(first);
        while (take(word))
            made.parts.push_back(term());
        return add(std::move(made));
    }

    node_id inversion()
    {
        if (!take("not"))
            return comparison();
        descend();
        const node_id inner = inversion();
        --depth;
        return add({node_kind::not_, false, 0, nothing, nothing, {inner}});
    }

    node_id comparison()
    {
        const node_id left = sum();
        const token &next = here();
        if (next.kind == token_kind::symbol && QStringView(u"=<>nlg").contains(QChar(next.symbol))) {
            ++at;
            const node_id right = sum();
            return add({node_kind::compare, false, next.symbol, nothing, nothing, {left, right}});
        }
        if (take("is")) {
            const bool negated = take("not");
            need("null");
            return add({node_kind::is_null, negated, 0, nothing, nothing, {left}});
        }
        const bool negated = is("not") && take("not");
        if (take("like")) {
            const node_id right = sum();
            return add({node_kind::like, negated, 0, nothing, nothing, {left, right}});
        }
        if (take("in"))
            return membership(left, negated);
        if (negated)
            refuse();
        return left;
    }

    node_id membership(node_id left, bool negated)
    {
        need(u'(');
        node made{node_kind::in_list, negated, 0, nothing, nothing, {left}};
        if (take("select")) {
            made.kind = node_kind::in_select;
            made.select = sub_select();
        } else {
            do
                made.parts.push_back(sum());
            while (take(u','));
        }
        need(u')');
        return add(std::move(made));
    }

    node_id sum()
    {
        node_id left = unary();
        int terms = 0;
        while (is(u'+') || is(u'-')) {
            if (++terms > deepest_nesting)
                descend();
            const node_kind kind = take(u'+') ? node_kind::add : (++at, node_kind::subtract);
            const node_id right = unary();
            left = add({kind, false, 0, nothing, nothing, {left, right}});
        }
        return left;
    }

    node_id unary()
    {
        if (take(u'+'))
            return guarded_unary();
        if (!take(u'-'))
            return primary();
        const node_id inner = guarded_unary();
        return add({node_kind::negate, false, 0, nothing, nothing, {inner}});
    }

    node_id guarded_unary()
    {
        descend();
        const node_id inner = unary();
        --depth;
        return inner;
    }

    node_id primary()
    {
        const token &first = here();
        switch (first.kind) {
        case token_kind::text:
            return add({node_kind::text, false, 0, token_id(at++), nothing, {}});
        case token_kind::number:
            return add({node_kind::number, false, 0, token_id(at++), nothing, {}});
        case token_kind::bracketed:
            return add({node_kind::column, false, 0, token_id(at++), nothing, {}});
        case token_kind::word:
            return word();
        case token_kind::symbol:
            return in_brackets();
        case token_kind::end:
            break;
        }
        refuse();
    }

    node_id in_brackets()
    {
        need(u'(');
        descend();
        node_id inner;
        if (take("select")) {
            const qint32 made = sub_select();
            inner = add({node_kind::select, false, 0, nothing, made, {}});
        } else {
            inner = condition();
        }
        --depth;
        need(u')');
        return inner;
    }

    node_id word()
    {
        const token_id place = token_id(at);
        if (behind().kind == token_kind::symbol && behind().symbol == u'(')
            return call();
        if (is("from") || is("where") || is("select"))
            refuse();
        ++at;
        const QStringView text = list.view(list.tokens[place]);
        const auto leaf = [&](node_kind kind) { return add({kind, false, 0, place, nothing, {}}); };
        if (is_word(text, QLatin1String("null")))
            return leaf(node_kind::null);
        if (is_word(text, QLatin1String("yes")) || is_word(text, QLatin1String("true")))
            return leaf(node_kind::yes);
        if (is_word(text, QLatin1String("no")) || is_word(text, QLatin1String("false")))
            return leaf(node_kind::no);
        return leaf(is_word(text, QLatin1String("now")) ? node_kind::now : node_kind::column);
    }

    node_id call()
    {
        const token_id place = token_id(at);
        const QStringView text = list.view(here());
        at += 2;
        node made{node_kind::function, false, 0, place, nothing, {}};
        if (is_word(text, QLatin1String("now"))) {
            made.kind = node_kind::now;
            made.name = nothing; // with brackets it is never a column
        } else if (is_word(text, QLatin1String("date"))) {
            made.kind = node_kind::today;
        } else if (is_word(text, QLatin1String("count"))) {
            made.kind = node_kind::count_rows;
            need(u'*');
        } else if (is_word(text, QLatin1String("max"))) {
            made.kind = node_kind::max_of;
            made.parts.push_back(add({node_kind::column, false, 0, name(), nothing, {}}));
        } else {
            descend();
            made.parts.push_back(sum());
            --depth;
        }
        need(u')');
        return add(std::move(made));
    }

    const token_list &list;
    size_t at = 0;
    int depth = 0;
    statement_syntax out;
};

}

statement_syntax parse(const token_list &list)
{
    return reader(list).run();
}

}
