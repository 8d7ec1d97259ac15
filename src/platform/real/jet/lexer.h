// Cutting a statement into tokens, in one pass and without a copy of any of them.
// The shape is the statement with its literals out: two statements of one shape share a translation.
#pragma once
#include <QString>
#include <vector>

namespace jet {

enum class token_kind : quint8 { word, bracketed, number, text, symbol, end };

// Symbols stand for themselves, but for these.
constexpr char16_t not_equal = u'n'; // <>
constexpr char16_t at_most = u'l';   // <=
constexpr char16_t at_least = u'g';  // >=

struct token {
    token_kind kind = token_kind::end;
    bool doubled = false; // a text that holds doubled quotes
    char16_t symbol = 0;
    qint32 start = 0, length = 0; // in the statement, without quotes and brackets
    qint32 literal = -1;          // which literal of the statement it is
};

struct token_list {
    QStringView sql;              // must outlive the list
    std::vector<token> tokens;    // the last one is `end`
    std::vector<qint32> literals; // literal number -> place in tokens
    QString shape;                // complete only up to longest_shape tokens
    static constexpr size_t longest_shape = 400;

    QStringView view(const token &which) const { return sql.mid(which.start, which.length); }
    const token &literal(qint32 number) const { return tokens[literals[number]]; }
    QString literal_text(qint32 number) const; // doubled quotes made single
};

// Fills the list anew, keeping its memory. Fails with syntax_error on an open text, an open bracket or a stray sign.
// Behind FROM, INTO, UPDATE and TABLE one name is read that may hold "-" and "." and be any word.
void lex(QStringView sql, token_list &into);

bool is_word(QStringView text, QLatin1String lower_case_word);

}
