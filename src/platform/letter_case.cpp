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

// Writes the letter at the end of what is written.
QChar *write_letter(QChar *at, char32_t letter)
{
    if (QChar::requiresSurrogates(letter)) {
        *at++ = QChar(QChar::highSurrogate(letter));
        *at++ = QChar(QChar::lowSurrogate(letter));
    } else {
        *at++ = QChar(char16_t(letter));
    }
    return at;
}

// Simple mappings keep a letter in its plane, so the text keeps its length.
template <typename Change>
QString letter_by_letter(QStringView text, Change change)
{
    QString changed(text.size(), Qt::Uninitialized);
    QChar *to = changed.data();
    for (qsizetype at = 0; at < text.size();) {
        const char16_t unit = text[at].unicode();
        if (unit < 0x80) {
            *to++ = QChar(char16_t(change(unit)));
            ++at;
        } else {
            to = write_letter(to, change(next_letter(text, at)));
        }
    }
    changed.truncate(to - changed.constData());
    return changed;
}

char32_t upper_letter(char32_t letter)
{
    if (letter < 0x80)
        return letter >= U'a' && letter <= U'z' ? letter - 32 : letter;
    const char32_t upper = QChar::toUpper(letter);
    return QChar::requiresSurrogates(upper) == QChar::requiresSurrogates(letter) ? upper : letter;
}

}

char32_t fold_far_letter(char32_t letter)
{
    const char32_t folded = QChar::toCaseFolded(letter);
    return QChar::requiresSurrogates(folded) == QChar::requiresSurrogates(letter) ? folded : letter;
}

QString upper_case(QStringView text)
{
    return letter_by_letter(text, upper_letter);
}

QString fold_case(QStringView text)
{
    return letter_by_letter(text, fold_letter);
}

int compare_case_blind(QStringView a, QStringView b)
{
    const qsizetype both = a.size() < b.size() ? a.size() : b.size();
    qsizetype same = 0; // long lists are sorted by texts that mostly begin alike
    while (same < both && a[same] == b[same])
        ++same;
    if (same > 0 && a[same - 1].isHighSurrogate()) // the rest of its letter differs
        --same;
    qsizetype at_a = same;
    qsizetype at_b = same;
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
