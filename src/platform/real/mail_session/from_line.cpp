#include "platform/real/mail_session/from_line.h"
#include <QByteArrayList>
#include <algorithm>
#include <array>

namespace mbox {

namespace {

constexpr qsizetype most_words = 40;

bool is_digits(QByteArrayView text)
{
    return !text.isEmpty() &&
           std::all_of(text.begin(), text.end(), [](char letter) { return letter >= '0' && letter <= '9'; });
}

// 1 and up, 0 for another word.
template <size_t size>
int place_in(const std::array<const char *, size> &names, QByteArrayView word)
{
    for (size_t index = 0; index < size; ++index)
        if (word.size() == 3 && qstrnicmp(word.data(), 3, names[index], 3) == 0)
            return int(index) + 1;
    return 0;
}

int month_of(QByteArrayView word)
{
    constexpr std::array<const char *, 12> names{"jan", "feb", "mar", "apr", "may", "jun",
                                                 "jul", "aug", "sep", "oct", "nov", "dec"};
    return place_in(names, word);
}

bool is_weekday(QByteArrayView word)
{
    constexpr std::array<const char *, 7> names{"mon", "tue", "wed", "thu", "fri", "sat", "sun"};
    return place_in(names, word) > 0;
}

// "13:00" or "13:00:05".
QTime time_of(QByteArrayView word)
{
    const QByteArrayList pieces = word.toByteArray().split(':');
    if (pieces.size() < 2 || pieces.size() > 3)
        return {};
    for (const QByteArray &piece : pieces)
        if (!is_digits(piece) || piece.size() > 2)
            return {};
    return {pieces[0].toInt(), pieces[1].toInt(), qMin(pieces.value(2, "0").toInt(), 59)};
}

QByteArrayList words_of(QByteArrayView line)
{
    QByteArray text = line.toByteArray();
    text.replace(',', ' ');
    return text.simplified().split(' ').mid(0, most_words);
}

// What stands behind the sender, who may have blanks in his name: the last weekday begins the date.
QByteArrayList date_words(QByteArrayView line)
{
    const QByteArrayList words = words_of(line);
    for (qsizetype at = words.size() - 1; at > 0; --at)
        if (is_weekday(words[at]))
            return words.mid(at + 1);
    return {};
}

QByteArrayView first_line(QByteArrayView bytes)
{
    const qsizetype end = bytes.indexOf('\n');
    QByteArrayView line = end < 0 ? bytes : bytes.first(end);
    if (line.endsWith('\r'))
        line.chop(1);
    return line;
}

bool is_header_field(QByteArrayView line)
{
    const qsizetype colon = line.indexOf(':');
    if (line.startsWith(">From "))
        return true;
    return colon > 0 &&
           std::all_of(line.begin(), line.begin() + colon, [](char letter) { return letter > ' ' && letter < '\x7F'; });
}

}

QDateTime date_of_from_line(QByteArrayView line)
{
    int month = 0, day = 0, year = 0;
    QTime time;
    for (const QByteArray &word : date_words(line)) {
        if (month == 0 && month_of(word) > 0)
            month = month_of(word);
        else if (day == 0 && is_digits(word) && word.size() <= 2)
            day = word.toInt();
        else if (year == 0 && is_digits(word) && word.size() == 4)
            year = word.toInt();
        else if (!time.isValid())
            time = time_of(word);
    }
    const QDate date(year, month, day);
    if (year < 1970 || !date.isValid() || !time.isValid())
        return {};
    return QDateTime(date, time, Qt::UTC);
}

bool begins_mail(QByteArrayView bytes)
{
    if (!bytes.startsWith("From "))
        return false;
    const qsizetype end = bytes.indexOf('\n');
    if (end < 0 || end >= longest_from_lines / 2 || !date_of_from_line(first_line(bytes)).isValid())
        return false;
    const QByteArrayView below = bytes.sliced(end + 1);
    return below.isEmpty() || first_line(below).isEmpty() || is_header_field(first_line(below));
}

}
