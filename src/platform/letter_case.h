// Upper case and case-blind comparison, letter by letter (a sharp s is not "SS"), the same in the program and in the
// store: were they to differ, a mail with an accented letter would not be found again and be stored twice.
#pragma once
#include <QString>

QString upper_case(QStringView text);                 // simple Unicode upper case, same length in letters
QString fold_case(QStringView text);                  // simple Unicode case folding
int compare_case_blind(QStringView a, QStringView b); // below, equal to, above 0; by folded code point

char32_t fold_far_letter(char32_t letter); // beyond ASCII

inline char32_t fold_letter(char32_t letter)
{
    if (letter >= 0x80)
        return fold_far_letter(letter);
    return letter >= U'A' && letter <= U'Z' ? letter + 32 : letter;
}
