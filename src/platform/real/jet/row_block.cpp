#include "platform/real/jet/row_block.h"
#include "platform/real/jet/statement.h"
#include <QDataStream>
#include <sqlite3.h>

namespace jet {

void row_block::clear()
{
    constexpr size_t kept = 4 << 20; // one long text must not lie in memory until the end
    cells.clear();
    texts.clear();
    if (texts.capacity() > kept)
        std::vector<char>().swap(texts);
}

void row_block::put_text(const char *text, size_t length)
{
    cell &made = cells.emplace_back();
    made.is = kind::text;
    made.length = quint32(length);
    made.start = texts.size();
    texts.insert(texts.end(), text, text + length);
}

// The store's connection has no lock of its own and is used by one thread, so its values may be looked at directly.
void row_block::take(sqlite3_stmt *row, int first_column)
{
    for (int place = first_column; place < first_column + int(width); ++place) {
        sqlite3_value *from = sqlite3_column_value(row, place);
        const int kept_as = sqlite3_value_type(from);
        if (kept_as == SQLITE_TEXT || kept_as == SQLITE_BLOB) {
            const auto *text = reinterpret_cast<const char *>(sqlite3_value_text(from));
            put_text(text, size_t(sqlite3_value_bytes(from)));
            continue;
        }
        cell &made = cells.emplace_back();
        if (kept_as == SQLITE_INTEGER) {
            made.is = kind::number;
            made.number = sqlite3_value_int64(from);
        } else if (kept_as == SQLITE_FLOAT) {
            made.is = kind::fraction;
            made.fraction = sqlite3_value_double(from);
        }
    }
}

void row_block::take_nulls()
{
    cells.resize(cells.size() + width);
}

void row_block::write(size_t row, QDataStream &to) const
{
    for (size_t column = 0; column < width; ++column) {
        const cell &each = cells[row * width + column];
        to << quint8(each.is);
        if (each.is == kind::number)
            to << each.number;
        else if (each.is == kind::fraction)
            to << each.fraction;
        else if (each.is == kind::text)
            to.writeBytes(texts.data() + each.start, each.length);
    }
}

void row_block::read(QDataStream &from)
{
    for (size_t column = 0; column < width; ++column) {
        quint8 is = 0;
        from >> is;
        if (kind(is) == kind::text) {
            QByteArray text;
            from >> text;
            put_text(text.constData(), size_t(text.size()));
            continue;
        }
        cell &made = cells.emplace_back();
        made.is = kind(is);
        if (made.is == kind::number)
            from >> made.number;
        else if (made.is == kind::fraction)
            from >> made.fraction;
    }
}

ado::Value row_block::value(size_t row, size_t column, ado::field_type type) const
{
    const cell &held = cells[row * width + column];
    switch (held.is) {
    case kind::number:
        return type == ado::field_type::flag ? ado::Value(held.number != 0) : ado::Value(held.number);
    case kind::fraction:
        return ado::Value(held.fraction);
    case kind::text:
        return text_value(held.length == 0 ? "" : texts.data() + held.start, int(held.length), type);
    default:
        return {};
    }
}

}
