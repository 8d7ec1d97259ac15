// Changes of single columns of a table's newest row ("update t set c='..' where key=(select max(key) from t)") come a
// dozen in a row while a mail is cut into columns. They wait here and reach SQLite as one statement: at the next other
// statement, or at the commit. A value that its column cannot take fails at once, as it would alone.
#pragma once
#include "platform/real/jet/schema.h"
#include "platform/real/jet/statement.h"
#include <QString>
#include <vector>

namespace jet {

class newest_row {
public:
    bool waits() const { return !places.empty(); }
    bool is_of(const QString &name) const { return waits() && table_name == name; }

    void begin(const QString &name, qint64 row_key);
    void put(int place, ado::Value value); // the later one wins
    void drop();                           // SQLite gave up all that was pending
    void forget_statements();              // the schema changed, or the file closes

    // The statement with everything bound, and nothing waits any more; step it and reset it.
    sqlite3_stmt *take(sqlite3 *db, const schema &tables, binder &parameters);
    // Reads the newest row's key: one row, Null when the table is empty.
    sqlite3_stmt *key_statement(sqlite3 *db, const table &of);

private:
    struct statement_for {
        QString table;
        std::vector<int> places;
        prepared_statement which;
    };
    QString table_name;
    qint64 key = 0;
    std::vector<int> places;
    std::vector<ado::Value> values;
    statement_for changing, looking; // the last ones used: mails of one map come together
};

}
