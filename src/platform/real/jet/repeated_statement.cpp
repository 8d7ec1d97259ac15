#include "platform/real/jet/repeated_statement.h"

namespace jet {

std::shared_ptr<plan> repeated_statements::find(QStringView sql, token_list &list)
{
    const qsizetype open = entries.empty() ? -1 : sql.indexOf(u'\'');
    if (open < 0)
        return {};
    const QStringView before = sql.first(open);
    for (size_t tried = 0; tried < entries.size(); ++tried) {
        const entry &each = entries[(next + tried) % entries.size()];
        const qsizetype close = sql.size() - each.behind.size() - 1;
        if (each.before.size() != open || close <= open || each.before != before || sql[close] != u'\'' ||
            sql.sliced(close + 1) != each.behind)
            continue;
        const QStringView text = sql.sliced(open + 1, close - open - 1);
        if (text.contains(u'\'')) // doubled ones, or the end of the text: for the lexer to tell
            return {};
        list.sql = sql;
        list.literals.assign(1, 0);
        list.tokens.assign(2, token());
        list.tokens[0] = {token_kind::text, false, u'\'', qint32(open + 1), qint32(text.size()), 0};
        next = (next + tried + 1) % entries.size();
        return each.held;
    }
    return {};
}

void repeated_statements::keep(const token_list &list, const std::shared_ptr<plan> &of)
{
    if (list.literals.size() != 1 || list.literal(0).kind != token_kind::text || list.literal(0).symbol != u'\'')
        return;
    if (entries.size() >= most)
        clear();
    const token &text = list.literal(0);
    entries.push_back(
        {list.sql.first(text.start - 1).toString(), list.sql.sliced(text.start + text.length + 1).toString(), of});
    next = 0;
}

void repeated_statements::clear()
{
    entries.clear();
    next = 0;
}

}
