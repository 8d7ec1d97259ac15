#include "platform/real/jet/expression_writer.h"
#include "platform/letter_case.h"
#include "platform/real/jet/failures.h"

namespace jet {

namespace {

bool comparable(value_kind a, value_kind b)
{
    const auto family = [](value_kind kind) { return kind == value_kind::flag ? value_kind::number : kind; };
    return a == value_kind::null || b == value_kind::null || family(a) == family(b);
}

bool is_condition(node_kind kind)
{
    switch (kind) {
    case node_kind::compare:
    case node_kind::like:
    case node_kind::in_list:
    case node_kind::in_select:
    case node_kind::is_null:
    case node_kind::not_:
    case node_kind::and_:
    case node_kind::or_:
        return true;
    default:
        return false;
    }
}

QByteArray symbol_text(char16_t symbol)
{
    switch (symbol) {
    case not_equal:
        return "<>";
    case at_most:
        return "<=";
    case at_least:
        return ">=";
    default:
        return QByteArray(1, char(symbol));
    }
}

QByteArray kind_code(value_kind kind)
{
    return QByteArray::number(int(kind));
}

}

value_kind kind_of(ado::field_type type)
{
    switch (type) {
    case ado::field_type::date:
        return value_kind::date;
    case ado::field_type::flag:
        return value_kind::flag;
    case ado::field_type::number:
    case ado::field_type::autonumber:
        return value_kind::number;
    default:
        return value_kind::text;
    }
}

const table &expression_writer::table_named(token_id which) const
{
    const QString wanted = name(which);
    if (const table *found = known.find(wanted))
        return *found;
    fail(ado::unknown_table, QStringLiteral("The store could not find the input table '") + wanted +
                                 "'. Make sure it exists and that its name is spelled correctly.");
}

const column &expression_writer::column_named(token_id which, const table &of) const
{
    const QString wanted = name(which);
    const int place = of.place_of(wanted);
    if (place < 0)
        fail_no_column(wanted);
    return of.columns[place];
}

const column *expression_writer::find(token_id which) const
{
    const QStringView wanted = list.view(list.tokens[which]);
    for (auto scope = scopes.rbegin(); scope != scopes.rend(); ++scope)
        if (const int place = (*scope)->place_of(wanted); place >= 0)
            return &(*scope)->columns[place];
    return nullptr;
}

const column *expression_writer::plain_column(node_id which) const
{
    const node &of = at(which);
    const bool may_be = of.kind == node_kind::column || (of.kind == node_kind::now && of.name != nothing);
    return may_be ? find(of.name) : nullptr;
}

bool expression_writer::has_aggregate(node_id which) const
{
    const node &of = at(which);
    if (of.kind == node_kind::count_rows || of.kind == node_kind::max_of)
        return true;
    for (const node_id part : of.parts)
        if (has_aggregate(part))
            return true;
    return false;
}

void expression_writer::bind(const binding &what)
{
    sql += '?';
    out.bindings.push_back(what);
}

void expression_writer::literal(token_id which, binding::form as, bool negative, const target &to)
{
    bind({binding::source::literal, as, negative, {list.tokens[which].literal}, to});
}

// A text, a number, or a number with a minus.
bool expression_writer::is_literal(node_id which, bool &negative, token_id &literal_token) const
{
    const node *of = &at(which);
    negative = of->kind == node_kind::negate;
    if (negative)
        of = &at(of->parts[0]);
    literal_token = of->name;
    return of->kind == node_kind::number || (of->kind == node_kind::text && !negative);
}

void expression_writer::where(node_id which)
{
    if (which == nothing)
        return;
    sql += " WHERE ";
    condition(which);
}

void expression_writer::order(const select_syntax &select, const table &from)
{
    sql += " ORDER BY ";
    for (const order_item &item : select.order) {
        const column &by = column_named(item.column, from);
        sql += by.quoted;
        if (kind_of(by.type) == value_kind::text)
            sql += " COLLATE JET";
        sql += item.descending ? " DESC," : ",";
    }
    sql += from.row_key; // twins keep the order of the table
}

// --- conditions

void expression_writer::condition(node_id which)
{
    const node &of = at(which);
    switch (of.kind) {
    case node_kind::and_:
    case node_kind::or_:
        sql += '(';
        chain(of);
        sql += ')';
        return;
    case node_kind::not_:
        sql += "(NOT ";
        condition(of.parts[0]);
        sql += ')';
        return;
    case node_kind::compare:
        compare(of);
        return;
    case node_kind::like:
        return like(of);
    case node_kind::in_list:
        return in_list(of);
    case node_kind::in_select:
        return in_select(of);
    case node_kind::is_null:
        value(of.parts[0]);
        sql += of.negated ? " IS NOT NULL" : " IS NULL";
        return;
    default:
        break;
    }
    const value_kind kind = value(which);
    if (kind == value_kind::text || kind == value_kind::date)
        fail_criteria();
}

// SQLite bounds the depth of an expression: long chains become lists or balanced trees.
void expression_writer::chain(const node &of)
{
    if (of.kind == node_kind::and_) {
        joined(of.parts, 0, of.parts.size(), " AND ");
        return received_at(of);
    }
    QByteArray numbers;
    const std::vector<node_id> others = gather_numbers(of, numbers);
    sql += numbers;
    if (!numbers.isEmpty() && !others.empty())
        sql += " OR ";
    joined(others, 0, others.size(), " OR ");
}

void expression_writer::joined(const std::vector<node_id> &parts, size_t first, size_t last, const char *word)
{
    if (last - first <= 8) {
        for (size_t i = first; i < last; ++i) {
            if (i > first)
                sql += word;
            condition(parts[i]);
        }
        return;
    }
    const size_t middle = first + (last - first) / 2;
    sql += '(';
    joined(parts, first, middle, word);
    sql += ')';
    sql += word;
    sql += '(';
    joined(parts, middle, last, word);
    sql += ')';
}

// Takes "c=1 or c=2 or .." out of a long chain as one list; gives back the other parts.
std::vector<node_id> expression_writer::gather_numbers(const node &of, QByteArray &list_written)
{
    constexpr size_t short_chain = 8;
    if (of.parts.size() <= short_chain)
        return of.parts;
    const column *common = nullptr;
    std::vector<node_id> others;
    for (const node_id part : of.parts) {
        const node &term = at(part);
        const column *side = nullptr;
        if (term.kind == node_kind::compare && term.symbol == u'=' && at(term.parts[1]).kind == node_kind::number)
            side = plain_column(term.parts[0]);
        if (!side || kind_of(side->type) != value_kind::number || (common && side != common)) {
            others.push_back(part);
            continue;
        }
        list_written += common ? QByteArray(",") : side->quoted + " IN (";
        list_written += list.view(list.tokens[at(term.parts[1]).name]).toLatin1();
        common = side;
    }
    if (common) {
        list_written += ')';
        out.cacheable = false;
    }
    return others;
}

// The duplicate test asks for the six parts of one date column. Together they are one moment, which an index finds.
void expression_writer::received_at(const node &of)
{
    static constexpr std::array<const char *, 6> parts{"month", "day", "year", "hour", "minute", "second"};
    const column *asked = nullptr;
    binding moment{binding::source::moment, binding::form::plain, false, {-1, -1, -1, -1, -1, -1}, {}};
    for (const node_id part : of.parts) {
        const node &term = at(part);
        if (term.kind != node_kind::compare || term.symbol != u'=' || at(term.parts[0]).kind != node_kind::function ||
            at(term.parts[1]).kind != node_kind::number)
            continue;
        const node &call = at(term.parts[0]);
        const column *side = plain_column(call.parts[0]);
        if (!side || side->type != ado::field_type::date || (asked && side != asked))
            continue;
        for (size_t i = 0; i < parts.size(); ++i)
            if (is_word(list.view(list.tokens[call.name]), QLatin1String(parts[i]))) {
                moment.literals[i] = list.tokens[at(term.parts[1]).name].literal;
                asked = side;
            }
    }
    if (!asked || std::find(moment.literals.begin(), moment.literals.end(), -1) != moment.literals.end())
        return;
    sql += " AND " + asked->quoted + '=';
    bind(moment);
}

value_kind expression_writer::compare(const node &of)
{
    const value_kind left = value(of.parts[0]);
    sql += symbol_text(of.symbol);
    const value_kind right = value(of.parts[1]);
    if (!comparable(left, right))
        fail_criteria();
    if (left == value_kind::text || right == value_kind::text)
        sql += " COLLATE JET";
    return value_kind::flag;
}

void expression_writer::like(const node &of)
{
    like_side(of.parts[0], false);
    sql += of.negated ? " NOT LIKE " : " LIKE ";
    like_side(of.parts[1], true);
}

// Numbers and dates are compared as their texts.
void expression_writer::like_side(node_id which, bool pattern)
{
    if (pattern && at(which).kind == node_kind::text)
        return literal(at(which).name, binding::form::pattern);
    const qsizetype start = sql.size();
    const value_kind kind = value(which);
    if (kind != value_kind::text && kind != value_kind::null) {
        sql.insert(start, "jet_text(");
        sql += ',' + kind_code(kind) + ')';
    }
}

void expression_writer::in_list(const node &of)
{
    const value_kind left = value(of.parts[0]);
    if (left == value_kind::text)
        sql += " COLLATE JET";
    sql += of.negated ? " NOT IN (" : " IN (";
    for (size_t i = 1; i < of.parts.size(); ++i) {
        if (i > 1)
            sql += ',';
        const node &item = at(of.parts[i]);
        if (item.kind == node_kind::number) {
            sql += list.view(list.tokens[item.name]).toLatin1();
            out.cacheable = false;
            if (!comparable(left, value_kind::number))
                fail_criteria();
        } else if (!comparable(left, value(of.parts[i]))) {
            fail_criteria();
        }
    }
    sql += ')';
}

void expression_writer::in_select(const node &of)
{
    const value_kind left = value(of.parts[0]);
    if (left == value_kind::text)
        sql += " COLLATE JET";
    sql += of.negated ? " NOT IN " : " IN ";
    if (!comparable(left, sub_select(of.select)))
        fail_criteria();
}

// --- values

value_kind expression_writer::value(node_id which)
{
    const node &of = at(which);
    if (is_condition(of.kind)) { // the dialect's true is -1
        sql += "(-(";
        condition(which);
        sql += "))";
        return value_kind::flag;
    }
    switch (of.kind) {
    case node_kind::text:
        literal(of.name, binding::form::plain);
        return value_kind::text;
    case node_kind::number:
        literal(of.name, binding::form::plain);
        return value_kind::number;
    case node_kind::null:
        sql += "NULL";
        return value_kind::null;
    case node_kind::yes:
    case node_kind::no:
        sql += of.kind == node_kind::yes ? "-1" : "0";
        return value_kind::flag;
    case node_kind::today:
        bind({binding::source::today, binding::form::plain, false, {}, {}});
        return value_kind::date;
    case node_kind::negate:
    case node_kind::add:
    case node_kind::subtract:
        return arithmetic(of);
    case node_kind::select:
        return sub_select(of.select);
    case node_kind::count_rows:
        sql += "count(*)";
        return value_kind::number;
    case node_kind::max_of: {
        sql += "max(";
        const value_kind kind = value(of.parts[0]);
        sql += kind == value_kind::text ? " COLLATE JET)" : ")";
        return kind;
    }
    case node_kind::function:
        return function(of);
    default:
        return column_value_of(of);
    }
}

value_kind expression_writer::column_value_of(const node &of)
{
    const column *found = of.name == nothing ? nullptr : find(of.name);
    if (found) {
        sql += found->quoted;
        return kind_of(found->type);
    }
    if (of.kind != node_kind::now)
        fail_no_column(name(of.name));
    bind({binding::source::now, binding::form::plain, false, {}, {}});
    return value_kind::date;
}

value_kind expression_writer::arithmetic(const node &of)
{
    bool negative = false;
    token_id which = nothing;
    if (of.kind == node_kind::negate && at(of.parts[0]).kind == node_kind::number) {
        which = at(of.parts[0]).name;
        negative = true;
        literal(which, binding::form::plain, negative);
        return value_kind::number;
    }
    sql += of.kind == node_kind::negate ? "(-" : "(";
    const value_kind left = value(of.parts[0]);
    value_kind kind = left;
    if (of.kind != node_kind::negate) {
        const qsizetype sign = sql.size();
        const value_kind right = value(of.parts[1]);
        if (!comparable(left, right))
            fail_criteria();
        kind = left == value_kind::null ? right : left;
        const bool joins = kind == value_kind::text && of.kind == node_kind::add;
        sql.insert(sign, joins ? "||" : of.kind == node_kind::add ? "+" : "- "); // "--" would be a comment
        if (joins) {
            sql += ')';
            return kind;
        }
    }
    if (kind == value_kind::text || kind == value_kind::date)
        fail_criteria();
    sql += ')';
    return value_kind::number;
}

value_kind expression_writer::function(const node &of)
{
    const QString called = fold_case(name(of.name));
    const node_id argument = of.parts[0];
    if (called == u"datevalue") {
        if (at(argument).kind == node_kind::text) {
            literal(at(argument).name, binding::form::day);
            return value_kind::date;
        }
        sql += "jet_datevalue(";
        value(argument);
        sql += ')';
        return value_kind::date;
    }
    if (called == u"ucase") {
        sql += "jet_ucase(";
        like_side(argument, false);
        sql += ')';
        return value_kind::text;
    }
    if (QStringList{"month", "day", "year", "hour", "minute", "second"}.contains(called)) {
        sql += "jet_" + called.toLatin1() + '(';
        value(argument);
        sql += ')';
        return value_kind::number;
    }
    fail(ado::syntax_error, QStringLiteral("Undefined function '") + name(of.name) + "' in expression.");
}

value_kind expression_writer::sub_select(qint32 which)
{
    const select_syntax &select = syntax.selects[which];
    const table &from = table_named(select.from);
    enter(from);
    sql += "(SELECT ";
    value_kind kind;
    if (select.all && from.columns.size() == 1) {
        sql += from.columns[0].quoted;
        kind = kind_of(from.columns[0].type);
    } else if (select.items.size() == 1) {
        kind = value(select.items[0]);
    } else {
        fail(ado::syntax_error, QStringLiteral("At most one field can be returned by this subquery."));
    }
    sql += " FROM " + from.quoted;
    where(select.where);
    if (!select.order.empty())
        order(select, from);
    sql += ')';
    leave();
    return kind;
}

void expression_writer::assigned(node_id which, const column &to)
{
    bool negative = false;
    token_id token = nothing;
    if (is_literal(which, negative, token))
        return literal(token, binding::form::to_column, negative, target_of(to));
    const qsizetype start = sql.size();
    const value_kind kind = value(which);
    if (kind == value_kind::null) {
        if (to.type == ado::field_type::flag)
            sql.replace(start, sql.size() - start, "0");
        return;
    }
    const bool fits = kind == kind_of(to.type) && (kind != value_kind::text || to.width == 0) &&
                      (kind != value_kind::number || to.whole) && plain_column(which) == nullptr;
    if (fits && kind != value_kind::flag && kind != value_kind::number)
        return;
    if (kind == value_kind::flag && to.type == ado::field_type::flag && !plain_column(which))
        return;
    sql.insert(start, "jet_convert(");
    sql += ',' + kind_code(kind) + ',' + QByteArray::number(int(to.type)) + ',' + QByteArray::number(to.width) + ',' +
           QByteArray::number(to.whole) + ')';
}

void expression_writer::converted_column(const column &from, const column &to)
{
    sql += "jet_convert(" + from.quoted + ',' + kind_code(kind_of(from.type)) + ',' + QByteArray::number(int(to.type)) +
           ',' + QByteArray::number(to.width) + ',' + QByteArray::number(to.whole) + ')';
}

}
