// The rows of an open select: where they are kept, which one is current. Editing them is the recordset's.
//
// A fixed cursor holds the rows as they were at Open: those of the first window at once, the keys of the others, whose
// rows come in windows as they are visited. When their table is about to change they are set aside in a file first.
// A live cursor holds keys only, read at the first use, and reads each row when it is asked for.
#pragma once
#include "platform/real/jet/database.h"
#include "platform/real/jet/row_file.h"

namespace jet {

class row_cursor : public open_rows {
public:
    row_cursor(database &store, std::shared_ptr<plan> select, const QString &statement, bool live);
    ~row_cursor() override;

    const plan &select() const { return *of; }
    plan &select() { return *of; }

    qint64 count();
    bool at_end();     // behind the last row; also when there are none
    bool at_start();   // before the first; also when there are none
    void move_first(); // no_current_record when there are no rows, as move_last
    void move_last();
    void move_by(int step); // 1 or -1; no_current_record from beyond the rows

    ado::Value value(size_t column); // of the current row; no_current_record without one
    qint64 current_key();
    void appended(qint64 key); // a row was added and becomes current
    void deleted();            // the current row; there is none until the next move

    void before_change(const QString &table) override;
    void release_statements() override { of->release_statements(); }
    void store_closed() override { db = nullptr; }

private:
    void load();
    void load_keys();
    void load_first_rows();
    void need_rows();
    size_t current_row(); // in the window, which is filled with it
    void start_window(qint64 start);
    bool window_is_full() const;
    bool has_room(); // for a further row, in a window that must reach the current one
    void need_live_row(qint64 key);
    void fill_window();
    void fill_from_keys(qint64 first, qint64 last);
    void fill_from_aside(qint64 first, qint64 last);

    database *db;
    std::shared_ptr<plan> of;
    QString sql;
    bool live;
    bool loaded = false;
    bool gap = false;         // the current row was deleted; position is the one behind it
    std::vector<qint64> keys; // empty for rows without keys, which are all in the window
    qint64 rows = 0;
    qint64 position = 0; // -1 .. rows

    row_block window;
    qint64 window_start = 0; // the number of its first row; live: the key of its only one
    struct made_value {
        size_t row, column; // in the window
        ado::Value value;
    };
    std::optional<made_value> last_long; // callers ask for a mail's body more than once
    quint64 read_at_change = 0;          // live: when the window's one row was read
    std::unique_ptr<row_file> aside;
    std::optional<qint64> added; // current, while the rows are not loaded
};

}
