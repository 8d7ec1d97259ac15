#include "platform/real/jet/lexer.h"
#include "platform/real/jet/failures.h"
#include <array>
#include <cstring>

namespace jet {

namespace {

// What an ASCII character may be, looked up once a character: statements are lexed by the hundred thousand.
enum ability : quint8 { digit = 1, name_start = 2, name_part = 4, table_name_part = 8 };

constexpr std::array<quint8, 128> abilities = [] {
    std::array<quint8, 128> table{};
    for (int c = 0; c < 128; ++c) {
        const bool is_letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
        const bool is_number = c >= '0' && c <= '9';
        table[size_t(c)] =
            quint8((is_number ? digit : 0) | (is_letter ? name_start : 0) | (is_letter || is_number ? name_part : 0) |
                   (is_letter || is_number || c == '-' || c == '.' ? table_name_part : 0));
    }
    return table;
}();

bool can_be(char16_t c, ability what)
{
    return c < 128 ? (abilities[c] & what) != 0 : what != digit;
}

bool is_digit(char16_t c)
{
    return can_be(c, digit);
}

bool is_blank(char16_t c)
{
    return c == u' ' || c == u'\t' || c == u'\r' || c == u'\n';
}

bool names_a_table_next(QStringView word)
{
    switch (word.size()) {
    case 4:
        return is_word(word, QLatin1String("from")) || is_word(word, QLatin1String("into"));
    case 5:
        return is_word(word, QLatin1String("table"));
    case 6:
        return is_word(word, QLatin1String("update"));
    default:
        return false;
    }
}

class scanner {
public:
    scanner(QStringView text, token_list &list) : sql(text), into(list), size(qint32(text.size()))
    {
        // Room for all: a token writes at most its own text and one more. Shrinking keeps the memory.
        into.shape.resize(text.size() + qsizetype(token_list::longest_shape) + 2);
        shape_end = into.shape.data();
    }

    void run()
    {
        while (true) {
            while (at < size && is_blank(sql[at].unicode()))
                ++at;
            if (at == size)
                break;
            next();
        }
        into.tokens.push_back({token_kind::end, false, 0, size, 0, -1});
        into.shape.resize(shape_end - into.shape.constData());
    }

private:
    void next()
    {
        const char16_t c = sql[at].unicode();
        const bool table_here = std::exchange(table_expected, false);
        if (table_here && can_be(c, table_name_part))
            return take_name(table_name_part);
        if (can_be(c, name_start)) {
            take_name(name_part);
            const token &word = into.tokens.back();
            table_expected = names_a_table_next(sql.mid(word.start, word.length));
        } else if (is_digit(c) || (c == u'.' && at + 1 < size && is_digit(sql[at + 1].unicode()))) {
            take_number();
        } else if (c == u'\'' || c == u'"') {
            take_text(c);
        } else if (c == u'[') {
            take_bracketed();
        } else {
            take_symbol(c);
        }
    }

    void push(token_kind kind, qint32 start, qint32 length, char16_t symbol = 0)
    {
        into.tokens.push_back({kind, false, symbol, start, length, -1});
    }

    void shape(QStringView text)
    {
        if (into.tokens.size() > token_list::longest_shape)
            return;
        memcpy(shape_end, text.data(), size_t(text.size()) * sizeof(QChar));
        shape_end += text.size();
        *shape_end++ = u' ';
    }

    void shape_literal(char16_t sign)
    {
        token &last = into.tokens.back();
        last.literal = qint32(into.literals.size());
        into.literals.push_back(qint32(into.tokens.size()) - 1);
        if (into.tokens.size() <= token_list::longest_shape)
            *shape_end++ = QChar(sign);
    }

    void take_name(ability part)
    {
        const qint32 start = at;
        const QChar *const letters = sql.data();
        while (at < size && can_be(letters[at].unicode(), part))
            ++at;
        push(token_kind::word, start, at - start);
        shape(sql.mid(start, at - start));
    }

    void take_number()
    {
        const qint32 start = at;
        while (at < size && is_digit(sql[at].unicode()))
            ++at;
        if (at < size && sql[at] == u'.')
            ++at;
        while (at < size && is_digit(sql[at].unicode()))
            ++at;
        if (at < size && (sql[at] == u'e' || sql[at] == u'E')) {
            qint32 behind = at + 1;
            if (behind < size && (sql[behind] == u'+' || sql[behind] == u'-'))
                ++behind;
            if (behind < size && is_digit(sql[behind].unicode())) {
                at = behind;
                while (at < size && is_digit(sql[at].unicode()))
                    ++at;
            }
        }
        if (at < size && can_be(sql[at].unicode(), table_name_part) && sql[at] != u'-')
            fail_syntax(sql.mid(start).toString());
        push(token_kind::number, start, at - start);
        shape_literal(u'\x02');
    }

    void take_text(char16_t quote)
    {
        const qint32 start = ++at;
        bool doubled = false;
        while (true) {
            const qsizetype found = sql.indexOf(QChar(quote), at);
            if (found < 0)
                fail_syntax(sql.mid(start - 1).toString());
            at = qint32(found) + 1;
            if (at == size || sql[at] != QChar(quote))
                break;
            doubled = true;
            ++at;
        }
        push(token_kind::text, start, at - 1 - start);
        into.tokens.back().doubled = doubled;
        into.tokens.back().symbol = quote;
        shape_literal(u'\x01');
    }

    void take_bracketed()
    {
        const qsizetype found = sql.indexOf(u']', at);
        const bool named = found > at + 1 && !sql.mid(at, found - at).contains(QChar(u'\0'));
        if (!named) // SQLite would end the name at the zero
            fail_syntax(sql.mid(at).toString());
        push(token_kind::bracketed, at + 1, qint32(found) - at - 1);
        shape(sql.mid(at, found - at + 1));
        at = qint32(found) + 1;
    }

    void take_symbol(char16_t c)
    {
        const char16_t second = at + 1 < size ? sql[at + 1].unicode() : u'\0';
        char16_t symbol = c;
        if (c == u'<' && second == u'>')
            symbol = not_equal;
        else if (c == u'<' && second == u'=')
            symbol = at_most;
        else if (c == u'>' && second == u'=')
            symbol = at_least;
        else if (!QStringView(u"=<>(),*+-").contains(QChar(c)))
            fail_syntax(sql.mid(at).toString());
        const qint32 length = symbol == c ? 1 : 2;
        push(token_kind::symbol, at, length, symbol);
        shape(sql.mid(at, length));
        at += length;
    }

    QStringView sql;
    token_list &into;
    qint32 size;
    qint32 at = 0;
    QChar *shape_end = nullptr;
    bool table_expected = false;
};

}

QString token_list::literal_text(qint32 number) const
{
    const token &which = literal(number);
    QString text = view(which).toString();
    if (which.doubled) {
        const QString quote(QChar(which.symbol));
        text.replace(quote + quote, quote);
    }
    return text;
}

void lex(QStringView sql, token_list &into)
{
    into.sql = sql;
    into.tokens.clear();
    into.literals.clear();
    scanner(sql, into).run();
}

bool is_word(QStringView text, QLatin1String lower_case_word)
{
    if (text.size() != lower_case_word.size())
        return false;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text[i].unicode();
        const char16_t lower = c >= u'A' && c <= u'Z' ? char16_t(c + 32) : c;
        if (lower != char16_t(lower_case_word[i].unicode()))
            return false;
    }
    return true;
}

}
