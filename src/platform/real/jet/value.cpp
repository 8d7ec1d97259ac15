// ado::Value: what a value is as a text, a number, a flag, a date.
#include "platform/ado.h"
#include "platform/real/jet/conversion.h"
#include "platform/real/jet/dates.h"

namespace ado {

namespace {

[[noreturn]] void refuse_type()
{
    throw run_time_error{13, QStringLiteral("Type mismatch")};
}

[[noreturn]] void refuse_null()
{
    throw run_time_error{invalid_use_of_null, QStringLiteral("Invalid use of Null")};
}

// The language's own number for a failed conversion is 13, not the store's.
Value converted(const Value &value, field_type type)
{
    if (value.is_null())
        refuse_null();
    try {
        return jet::convert(value, {type, 0, true});
    } catch (const run_time_error &) {
        refuse_type();
    }
}

}

QString Value::to_text() const
{
    if (const auto *text = std::get_if<QString>(&held))
        return *text;
    if (const auto *number = std::get_if<qint64>(&held))
        return QString::number(*number);
    if (const auto *number = std::get_if<double>(&held))
        return jet::number_text(*number);
    if (const auto *flag = std::get_if<bool>(&held))
        return *flag ? QStringLiteral("True") : QStringLiteral("False");
    if (const auto *date = std::get_if<QDateTime>(&held))
        return jet::us_text(*date);
    refuse_null();
}

QString Value::text_or_empty() const
{
    return is_null() ? QString() : to_text();
}

qint64 Value::to_number() const
{
    if (const auto *number = std::get_if<qint64>(&held))
        return *number;
    return std::get<qint64>(converted(*this, field_type::number).held);
}

bool Value::to_flag() const
{
    return std::get<bool>(converted(*this, field_type::flag).held);
}

QDateTime Value::to_date() const
{
    return std::get<QDateTime>(converted(*this, field_type::date).held);
}

}
