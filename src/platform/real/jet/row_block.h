// Rows as SQLite hands them out, close together. A text stays UTF-8 until its column is asked for: most callers look at
// a few columns, and a mail's body, the longest of them, is seldom one.
#pragma once
#include "platform/ado.h"
#include <vector>

class QDataStream;
struct sqlite3_stmt;

namespace jet {

class row_block {
public:
    explicit row_block(size_t columns) : width(columns) {}

    void clear();
    void take(sqlite3_stmt *row, int first_column); // the current row, from this column on
    void take_nulls();                              // in the place of a row that is gone
    void write(size_t row, QDataStream &to) const;
    void read(QDataStream &from); // takes one that was written

    size_t rows() const { return width == 0 ? 0 : cells.size() / width; }
    size_t bytes() const { return texts.size(); } // of all texts
    size_t text_length(size_t row, size_t column) const { return cells[row * width + column].length; }
    ado::Value value(size_t row, size_t column, ado::field_type type) const;

private:
    enum class kind : quint8 { null, number, fraction, text };
    struct cell {
        kind is = kind::null;
        quint32 length = 0; // of a text
        union {
            qint64 number = 0;
            double fraction;
            size_t start; // of a text, in texts
        };
    };
    void put_text(const char *text, size_t length);

    size_t width;
    std::vector<cell> cells;
    std::vector<char> texts;
};

}
