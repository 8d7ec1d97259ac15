#include "frame/checks.h"
#include "frame/text.h"
#include "platform/reserved_words.h"

namespace {

bool is_ascii_letter(QChar letter)
{
    return (letter >= u'A' && letter <= u'Z') || (letter >= u'a' && letter <= u'z');
}

bool is_ascii_letter_or_digit(QChar letter)
{
    return is_ascii_letter(letter) || (letter >= u'0' && letter <= u'9');
}

bool allowed_in_address(QStringView part)
{
    for (const QChar letter : part) {
        if (!is_ascii_letter_or_digit(letter) && letter != u'_' && letter != u'-' && letter != u'.')
            return false;
    }
    return true;
}

bool is_name_of(const QString &name, QStringView further_letters)
{
    if (trim(name).isEmpty() || !is_ascii_letter(name[0]))
        return false;
    for (const QChar letter : name) {
        if (!is_ascii_letter_or_digit(letter) && !further_letters.contains(letter))
            return false;
    }
    return true;
}

}

bool valid_email(const QString &address)
{
    if (address.startsWith(u'@') || address.size() < 7 || address.count(u'@') != 1)
        return false;
    const qsizetype at = address.indexOf(u'@');
    if (!allowed_in_address(QStringView(address).first(at)))
        return false;
    // Checking stops at the first place where the last four characters occur, on purpose: short-cut kept.
    const qsizetype ending = address.indexOf(QStringView(address).last(4));
    return ending <= at || allowed_in_address(QStringView(address).sliced(at + 1, ending - at - 1));
}

bool valid_name(const QString &name)
{
    return is_name_of(name, u"_");
}

bool name_passes(QString &name)
{
    name = trim(name);
    return valid_name(name);
}

bool valid_query_name(const QString &name)
{
    return is_name_of(name, u"_-.") && !reserved_query_words().contains(upper_case(name));
}

bool reserved_word_free(const QString &value)
{
    const QString upper = upper_case(value);
    for (const QString &word : reserved_words()) {
        if (upper == upper_case(trim(word)))
            return false;
    }
    return !reserved_query_words().contains(upper);
}
