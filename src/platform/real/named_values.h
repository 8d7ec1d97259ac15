// Values and the names that they bear in a file.
#pragma once
#include <QString>
#include <array>

template <typename Value>
struct named_value {
    Value value;
    QLatin1String name;
};

template <typename Value, size_t count>
QString name_of(const std::array<named_value<Value>, count> &names, Value value)
{
    for (const named_value<Value> &one : names)
        if (one.value == value)
            return one.name;
    return {};
}

template <typename Value, size_t count>
Value value_named(const std::array<named_value<Value>, count> &names, const QString &name, Value otherwise,
                  Qt::CaseSensitivity capitals = Qt::CaseSensitive)
{
    for (const named_value<Value> &one : names)
        if (name.compare(one.name, capitals) == 0)
            return one.value;
    return otherwise;
}
