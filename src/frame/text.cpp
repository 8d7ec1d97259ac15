#include "frame/text.h"

#include <QChar>
#include <climits>

namespace {

bool is_low_half(QStringView text, qsizetype at)
{
    return at < text.size() && text[at].isLowSurrogate();
}

char32_t letter_at(QStringView text, qsizetype at)
{
    if (text[at].isHighSurrogate() && is_low_half(text, at + 1))
        return QChar::surrogateToUcs4(text[at], text[at + 1]);
    return text[at].unicode();
}

qsizetype letter_length(QStringView text, qsizetype at)
{
    return text[at].isHighSurrogate() && is_low_half(text, at + 1) ? 2 : 1;
}

// How much of text, from the position on, the part takes up, or -1. Compared letter by letter in the original: a
// position found in a folded copy need not fit.
qsizetype match_length(QStringView text, qsizetype from, QStringView part)
{
    qsizetype at = from;
    for (qsizetype in_part = 0; in_part < part.size();) {
        if (at >= text.size() || fold_letter(letter_at(text, at)) != fold_letter(letter_at(part, in_part)))
            return -1;
        at += letter_length(text, at);
        in_part += letter_length(part, in_part);
    }
    return at - from;
}

// Where the part occurs next, and how long it is there; -1 when it does not.
struct found_part {
    qsizetype at = -1;
    qsizetype length = 0;
};

// The first place from here on whose letter is that one, case-blind; the text's length when there is none.
qsizetype next_place_of(char32_t folded, QStringView text, qsizetype from)
{
    const QChar *const letters = text.data();
    const qsizetype size = text.size();
    for (qsizetype at = from; at < size;) {
        const char16_t unit = letters[at].unicode();
        const bool ascii = unit < 0x80;
        if (fold_letter(ascii ? unit : letter_at(text, at)) == folded)
            return at;
        at += ascii ? 1 : letter_length(text, at);
    }
    return size;
}

found_part find_part(QStringView text, qsizetype from, QStringView part)
{
    if (part.isEmpty())
        return {};
    const char32_t first = fold_letter(letter_at(part, 0));
    for (qsizetype at = from; (at = next_place_of(first, text, at)) < text.size(); at += letter_length(text, at)) {
        const qsizetype length = match_length(text, at, part);
        if (length >= 0)
            return {at, length};
    }
    return {};
}

QString replaced(QStringView text, QStringView part, QStringView by, bool only_first)
{
    found_part found = find_part(text, 0, part);
    if (found.at < 0)
        return text.toString();
    QString result;
    result.reserve(text.size());
    qsizetype copied = 0;
    while (found.at >= 0) {
        result += text.sliced(copied, found.at - copied);
        result += by;
        copied = found.at + found.length;
        found = only_first ? found_part{} : find_part(text, copied, part);
    }
    return result += text.sliced(copied);
}

}

QString trim(QStringView text)
{
    qsizetype from = 0;
    qsizetype to = text.size();
    while (from < to && text[from] == u' ')
        ++from;
    while (to > from && text[to - 1] == u' ')
        --to;
    return text.sliced(from, to - from).toString();
}

bool same_text(QStringView a, QStringView b)
{
    return compare_case_blind(a, b) == 0;
}

bool contains_text(QStringView text, QStringView part)
{
    return find_part(text, 0, part).at >= 0;
}

QString replace_all(QStringView text, QStringView part, QStringView by)
{
    return replaced(text, part, by, false);
}

QString replace_first(QStringView text, QStringView part, QStringView by)
{
    return replaced(text, part, by, true);
}

QString remove_all(QStringView text, QStringView part)
{
    return replaced(text, part, {}, false);
}

QString remove_first(QStringView text, QStringView part)
{
    return replaced(text, part, {}, true);
}

QStringList pieces(const QString &text, const QString &separator)
{
    if (text.isEmpty())
        return {};
    return separator.isEmpty() ? QStringList{text} : text.split(separator);
}

QString left(const QString &text, qsizetype count)
{
    if (count <= 0)
        return {};
    if (count >= text.size())
        return text;
    return text.first(is_low_half(text, count) && text[count - 1].isHighSurrogate() ? count - 1 : count);
}

QString crlf_line_ends(QStringView text)
{
    QString result;
    result.reserve(text.size() + text.size() / 16 + 16);
    qsizetype from = 0;
    for (qsizetype at = 0; (at = text.indexOf(u'\n', from)) >= 0; from = at + 1)
        result.append(text.sliced(from, at - from)).append(QStringView(u"\r\n"));
    return result.append(text.sliced(from));
}

QString plain_number(QStringView text)
{
    const QString trimmed = trim(text);
    QString plain;
    qsizetype at = 0;
    const auto take_sign = [&] {
        if (at < trimmed.size() && (trimmed[at] == u'-' || trimmed[at] == u'+'))
            plain += trimmed[at++];
    };
    const auto take_digits = [&](bool commas) {
        qsizetype digits = 0;
        while (at < trimmed.size()) {
            const char16_t letter = trimmed[at].unicode();
            if (letter >= u'0' && letter <= u'9') {
                plain += trimmed[at];
                ++digits;
            } else if (letter != u',' || !commas || digits == 0) {
                break;
            }
            ++at;
        }
        return digits;
    };
    take_sign();
    qsizetype digits = take_digits(true);
    if (at < trimmed.size() && trimmed[at] == u'.') {
        plain += trimmed[at++];
        digits += take_digits(false);
    }
    if (digits == 0)
        return {};
    if (at < trimmed.size() && (trimmed[at] == u'e' || trimmed[at] == u'E')) {
        plain += trimmed[at++];
        take_sign();
        if (take_digits(false) == 0)
            return {};
    }
    return at == trimmed.size() ? plain : QString();
}

bool is_numeric(QStringView text)
{
    return !plain_number(text).isEmpty();
}

qint16 to_int16(QStringView text)
{
    const QString plain = plain_number(text);
    if (plain.isEmpty())
        throw run_time_error{13, QStringLiteral("Type mismatch")};
    const double number = plain.toDouble();
    if (!(number > -32768.5 && number < 32767.5))
        throw run_time_error{6, QStringLiteral("Overflow")};
    return qint16(qRound(number));
}

int leading_number(QStringView text)
{
    const QString trimmed = trim(text);
    qsizetype at = 0;
    const bool negative = !trimmed.isEmpty() && trimmed[0] == u'-';
    if (negative || (!trimmed.isEmpty() && trimmed[0] == u'+'))
        ++at;
    qint64 number = 0;
    for (; at < trimmed.size() && trimmed[at] >= u'0' && trimmed[at] <= u'9'; ++at)
        number = qMin<qint64>(number * 10 + (trimmed[at].unicode() - u'0'), INT_MAX);
    return int(negative ? -number : number);
}

QString us_date(const QDate &date)
{
    return QString::number(date.month()) + u'/' + QString::number(date.day()) + u'/' + QString::number(date.year());
}

QString us_date_time(const QDateTime &moment)
{
    const QTime time = moment.time();
    const int hour = time.hour() % 12 == 0 ? 12 : time.hour() % 12;
    const auto two_digits = [](int number) { return QString::number(number).rightJustified(2, u'0'); };
    return us_date(moment.date()) + u' ' + QString::number(hour) + u':' + two_digits(time.minute()) + u':' +
           two_digits(time.second()) + (time.hour() < 12 ? QStringLiteral(" AM") : QStringLiteral(" PM"));
}

QDate us_date_in(const QString &text)
{
    return QDate::fromString(text, QStringLiteral("M/d/yyyy"));
}

QDateTime us_date_time_in(const QString &text)
{
    QDateTime moment = QDateTime::fromString(text, QStringLiteral("M/d/yyyy h:mm:ss AP"));
    moment.setTimeSpec(Qt::UTC);
    return moment;
}
