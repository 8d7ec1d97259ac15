#include "platform/letter_case.h"

#include <QChar>

namespace {

// Walks a text letter by letter; a lone surrogate counts as a letter of its own.
char32_t next_letter(QStringView text, qsizetype &at)
{
    const QChar first = text[at++];
    if (first.isHighSurrogate() && at < text.size() && text[at].isLowSurrogate())
        return QChar::surrogateToUcs4(first, text[at++]);
    return first.unicode();
}

void append_letter(QString &text, char32_t letter)
{
    if (QChar::requiresSurrogates(letter)) {
        text += QChar(QChar::highSurrogate(letter));
        text += QChar(QChar::lowSurrogate(letter));
    } else {
        text += QChar(char16_t(letter));
    }
}

template <typename Change>
QString letter_by_letter(QStringView text, Change change)
{
    QString changed;
    changed.reserve(text.size());
    for (qsizetype at = 0; at < text.size();)
        append_letter(changed, change(next_letter(text, at)));
    return changed;
}

}

char32_t fold_letter(char32_t letter)
{
    if (letter < 0x80)
        return letter >= U'A' && letter <= U'Z' ? letter + 32 : letter;
    return QChar::toCaseFolded(letter);
}

QString upper_case(QStringView text)
{
    return letter_by_letter(text, [](char32_t letter) { return QChar::toUpper(letter); });
}

QString fold_case(QStringView text)
{
    return letter_by_letter(text, [](char32_t letter) { return fold_letter(letter); });
}

int compare_case_blind(QStringView a, QStringView b)
{
    qsizetype at_a = 0;
    qsizetype at_b = 0;
    while (at_a < a.size() && at_b < b.size()) {
        const char32_t letter_a = fold_letter(next_letter(a, at_a));
        const char32_t letter_b = fold_letter(next_letter(b, at_b));
        if (letter_a != letter_b)
            return letter_a < letter_b ? -1 : 1;
    }
    if (at_a < a.size())
        return 1;
    return at_b < b.size() ? -1 : 0;
}
