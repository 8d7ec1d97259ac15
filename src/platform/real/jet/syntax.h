// A statement as the parser leaves it: small nodes in one list, addressed by number; names and literals stay tokens.
#pragma once
#include <QtGlobal>
#include <vector>

namespace jet {

using node_id = qint32;
using token_id = qint32; // place in token_list::tokens
constexpr qint32 nothing = -1;

enum class node_kind : quint8 {
    column,
    text,
    number,
    null,
    yes,
    no,
    now,
    today, // leaves
    negate,
    add,
    subtract,
    compare,
    like,
    in_list,
    in_select,
    is_null,
    not_,
    and_,
    or_,
    select,
    count_rows,
    max_of,
    function
};

struct node {
    node_kind kind;
    bool negated = false;    // not like, not in, is not null
    char16_t symbol = 0;     // of a comparison
    token_id name = nothing; // of a column, literal or function
    qint32 select = nothing; // of (select ..) and in (select ..)
    std::vector<node_id> parts = {};
};

struct order_item {
    token_id column;
    bool descending = false;
};

struct select_syntax {
    bool all = false; // *
    std::vector<node_id> items;
    token_id into = nothing, from = nothing;
    node_id where = nothing;
    std::vector<order_item> order;
};

enum class statement_kind : quint8 {
    select,
    select_into,
    insert,
    insert_select,
    update,
    delete_,
    add_column,
    drop_columns,
    drop_table
};

struct statement_syntax {
    statement_kind kind = statement_kind::select;
    token_id table = nothing;
    bool columns_named = false;
    std::vector<token_id> columns;
    std::vector<node_id> values; // one a column
    qint32 select = nothing;
    node_id where = nothing;
    qint32 width = 0; // of an added column

    std::vector<node> nodes;
    std::vector<select_syntax> selects;
};

}
