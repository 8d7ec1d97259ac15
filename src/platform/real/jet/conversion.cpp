#include "platform/real/jet/conversion.h"
#include "platform/real/jet/dates.h"
#include "platform/real/jet/failures.h"
#include <cmath>

namespace jet {

namespace {

using ado::Value;

// Digits alone need no double in between, which would lose the last ones of a long number.
std::optional<qint64> read_whole(QStringView text)
{
    bool good = false;
    const qint64 number = text.toLongLong(&good);
    return good && !text.contains(u'+') && text == text.trimmed() ? std::optional(number) : std::nullopt;
}

Value to_number(double number, bool whole)
{
    if (!whole)
        return Value(number);
    const double rounded = std::nearbyint(number); // half to even
    if (!(std::fabs(rounded) < 9.2e18))
        fail_mismatch();
    return Value(qint64(rounded));
}

Value text_to_number(const QString &text, bool whole)
{
    if (const auto number = read_whole(text); number && whole)
        return Value(*number);
    const auto number = read_number(text);
    if (!number)
        fail_mismatch();
    return to_number(*number, whole);
}

Value convert_to_number(const Value &value, bool whole)
{
    if (const auto *text = std::get_if<QString>(&value.held))
        return text_to_number(*text, whole);
    if (const auto *number = std::get_if<qint64>(&value.held))
        return whole ? value : Value(double(*number));
    if (const auto *number = std::get_if<double>(&value.held))
        return to_number(*number, whole);
    if (const auto *flag = std::get_if<bool>(&value.held))
        return to_number(*flag ? -1 : 0, whole);
    return to_number(day_number(std::get<QDateTime>(value.held)), whole);
}

Value text_to_flag(const QString &text)
{
    const QString word = text.toLower();
    if (word == u"true" || word == u"yes" || word == u"on")
        return Value(true);
    if (word == u"false" || word == u"no" || word == u"off")
        return Value(false);
    const auto number = read_number(text);
    if (!number)
        fail_mismatch();
    return Value(*number != 0);
}

Value convert_to_flag(const Value &value)
{
    if (value.is_null())
        return Value(false);
    if (const auto *text = std::get_if<QString>(&value.held))
        return text_to_flag(*text);
    if (const auto *number = std::get_if<qint64>(&value.held))
        return Value(*number != 0);
    if (const auto *number = std::get_if<double>(&value.held))
        return Value(*number != 0);
    if (std::holds_alternative<bool>(value.held))
        return value;
    fail_mismatch();
}

Value convert_to_date(const Value &value)
{
    if (std::holds_alternative<QDateTime>(value.held))
        return value;
    QDateTime date;
    if (const auto *text = std::get_if<QString>(&value.held))
        date = read_date(*text).value_or(QDateTime());
    else if (const auto *number = std::get_if<qint64>(&value.held))
        date = from_day_number(double(*number));
    else if (const auto *fraction = std::get_if<double>(&value.held))
        date = from_day_number(*fraction);
    if (!date.isValid())
        fail_mismatch();
    return Value(date);
}

Value convert_to_text(const Value &value, const target &to)
{
    Value text = std::holds_alternative<QString>(value.held) ? value : Value(value.to_text());
    if (to.width > 0 && std::get<QString>(text.held).size() > to.width)
        fail_too_long();
    return text;
}

}

Value convert(const Value &value, const target &to)
{
    if (to.type == ado::field_type::flag)
        return convert_to_flag(value);
    if (value.is_null())
        return value;
    switch (to.type) {
    case ado::field_type::number:
    case ado::field_type::autonumber:
        return convert_to_number(value, to.whole);
    case ado::field_type::date:
        return convert_to_date(value);
    default:
        return convert_to_text(value, to);
    }
}

std::optional<double> read_number(QStringView text)
{
    while (text.startsWith(u' '))
        text = text.mid(1);
    while (text.endsWith(u' '))
        text.chop(1);
    QString plain;
    bool fraction = false;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        const bool behind_digit = i > 0 && text[i - 1] >= u'0' && text[i - 1] <= u'9';
        if (c == u',' && !fraction && behind_digit && i + 1 < text.size())
            continue;
        fraction = fraction || c == u'.' || c == u'e' || c == u'E';
        if ((c < u'0' || c > u'9') && !QStringView(u"+-.eE").contains(c))
            return std::nullopt;
        plain += c;
    }
    bool good = false;
    const double number = plain.toDouble(&good); // always the C locale
    return good && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

QString number_text(double number)
{
    return QString::number(number, 'g', 15);
}

}
