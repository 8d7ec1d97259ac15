// Values on their way into a column, from one type to another. What cannot be converted fails with type_mismatch,
// a text longer than its column with value_too_long.
#pragma once
#include "platform/ado.h"
#include "platform/real/jet/schema.h"
#include <optional>

namespace jet {

// What a column takes: enough of it to convert a value.
struct target {
    ado::field_type type = ado::field_type::memo;
    int width = 0;
    bool whole = true;
};

inline target target_of(const column &of)
{
    return {of.type, of.width, of.whole};
}

// The value in the column's own alternative: QString, qint64 or double, bool, QDateTime. Null stays Null, but is "no"
// in a yes/no column.
ado::Value convert(const ado::Value &value, const target &to);

// Outer blanks, a sign, digits with thousands commas, one point, an exponent; nothing else.
std::optional<double> read_number(QStringView text);

// Shortest form without an exponent where there is one: "3", "2.5".
QString number_text(double number);

}
