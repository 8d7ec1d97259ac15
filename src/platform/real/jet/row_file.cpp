#include "platform/real/jet/row_file.h"
#include "platform/real/jet/failures.h"
#include <QDataStream>

namespace jet {

namespace {

void write_value(QDataStream &to, const ado::Value &value)
{
    to << quint8(value.held.index());
    if (const auto *text = std::get_if<QString>(&value.held))
        to << *text;
    else if (const auto *number = std::get_if<qint64>(&value.held))
        to << *number;
    else if (const auto *fraction = std::get_if<double>(&value.held))
        to << *fraction;
    else if (const auto *flag = std::get_if<bool>(&value.held))
        to << *flag;
    else if (const auto *date = std::get_if<QDateTime>(&value.held))
        to << *date;
}

template <typename Held>
ado::Value read_held(QDataStream &from)
{
    Held held{};
    from >> held;
    return ado::Value(held);
}

ado::Value read_value(QDataStream &from)
{
    quint8 alternative = 0;
    from >> alternative;
    switch (alternative) {
    case 1:
        return read_held<QString>(from);
    case 2:
        return read_held<qint64>(from);
    case 3:
        return read_held<double>(from);
    case 4:
        return read_held<bool>(from);
    case 5:
        return read_held<QDateTime>(from);
    default:
        return {};
    }
}

}

row_file::row_file()
{
    if (!file.open())
        fail(ado::store_failure, QStringLiteral("No temporary file: ") + file.errorString());
}

void row_file::append(const row &values)
{
    starts.push_back(file.pos());
    QDataStream out(&file);
    out << quint32(values.size());
    for (const ado::Value &value : values)
        write_value(out, value);
    if (out.status() != QDataStream::Ok)
        fail(ado::store_failure, QStringLiteral("No room for a temporary file: ") + file.errorString());
}

row row_file::read(size_t number)
{
    file.seek(starts[number]);
    QDataStream in(&file);
    quint32 size = 0;
    in >> size;
    row values;
    for (quint32 i = 0; i < size; ++i)
        values.push_back(read_value(in));
    return values;
}

}
