#include "platform/real/jet/row_cursor.h"
#include "platform/real/jet/failures.h"
#include <algorithm>
#include <sqlite3.h>

namespace jet {

namespace {

constexpr size_t window_rows = 500;
constexpr size_t window_bytes = 2 << 20; // of texts in a window

[[noreturn]] void fail_no_row()
{
    fail(ado::no_current_record, QStringLiteral("Either BOF or EOF is True, or the current record has been deleted. "
                                                "Requested operation requires a current record."));
}

}

row_cursor::row_cursor(database &store, std::shared_ptr<plan> select, const QString &statement, bool stays_live)
    : db(&store), of(std::move(select)), sql(statement), live(stays_live && of->keyed), window(of->columns.size())
{
    if (!live)
        load();
    db->add(this);
}

row_cursor::~row_cursor()
{
    if (db)
        db->remove(this);
}

void row_cursor::load()
{
    if (live || of->sorted)
        load_keys();
    else
        load_first_rows();
    rows = of->keyed ? qint64(keys.size()) : qint64(window.rows());
    loaded = true;
    if (added) {
        auto found = std::find(keys.begin(), keys.end(), *added);
        if (found == keys.end()) { // added, though the statement would not find it
            found = keys.insert(found, *added);
            ++rows;
        }
        position = found - keys.begin();
        added.reset();
    }
}

void row_cursor::load_keys()
{
    keys.clear();
    db->read(*of, sql, database::part::keys, [this](sqlite3_stmt *from) {
        keys.push_back(sqlite3_column_int64(from, 0));
        return true;
    });
    if (!of->sorted && !std::is_sorted(keys.begin(), keys.end()))
        std::sort(keys.begin(), keys.end());
}

// A table that fits into the first window is read in one go. Of a longer one the keys are read while the statement of
// the rows stands at a row and thus holds its lock, so that no other program writes between the two. The clock goes on,
// though: a statement that asks for it may find other rows the second time.
void row_cursor::load_first_rows()
{
    db->read(*of, sql, database::part::rows, [this](sqlite3_stmt *from) {
        if (of->keyed && window_is_full()) {
            const std::vector<qint64> first = keys;
            load_keys();
            if (keys.size() < first.size() || !std::equal(first.begin(), first.end(), keys.begin()))
                start_window(0);
            return false;
        }
        if (of->keyed)
            keys.push_back(sqlite3_column_int64(from, 0));
        window.take(from, of->keyed ? 1 : 0);
        return true;
    });
}

void row_cursor::need_rows()
{
    if (!loaded)
        load();
}

qint64 row_cursor::count()
{
    need_rows();
    return rows;
}

bool row_cursor::at_end()
{
    if (added || gap)
        return false;
    need_rows();
    return position >= rows;
}

bool row_cursor::at_start()
{
    if (added || gap)
        return false;
    need_rows();
    return position < 0 || rows == 0;
}

void row_cursor::move_first()
{
    need_rows();
    gap = false;
    if (rows == 0)
        fail_no_row();
    position = 0;
}

void row_cursor::move_last()
{
    need_rows();
    gap = false;
    if (rows == 0)
        fail_no_row();
    position = rows - 1;
}

void row_cursor::move_by(int step)
{
    need_rows();
    if (std::exchange(gap, false)) {
        position += step < 0 ? -1 : 0;
        return;
    }
    if (rows == 0 || (step > 0 && position >= rows) || (step < 0 && position < 0))
        fail_no_row();
    position += step;
}

qint64 row_cursor::current_key()
{
    if (added)
        return *added;
    need_rows();
    if (gap || position < 0 || position >= rows)
        fail_no_row();
    return of->keyed ? keys[size_t(position)] : 0;
}

ado::Value row_cursor::value(size_t column)
{
    constexpr size_t long_text = 4096;
    const size_t row = current_row();
    const ado::field_type type = of->columns[column].type;
    if (window.text_length(row, column) < long_text)
        return window.value(row, column, type);
    if (!last_long || last_long->row != row || last_long->column != column)
        last_long = made_value{row, column, window.value(row, column, type)};
    return last_long->value;
}

size_t row_cursor::current_row()
{
    const qint64 key = current_key();
    if (live) {
        need_live_row(key);
        return 0;
    }
    if (position < window_start || position >= window_start + qint64(window.rows()))
        fill_window();
    return size_t(position - window_start);
}

void row_cursor::need_live_row(qint64 key)
{
    if (window.rows() > 0 && window_start == key && read_at_change == db->changes())
        return;
    start_window(key);
    db->read_by_keys(
        *of, &key, &key + 1,
        [this](sqlite3_stmt *from) {
            window.take(from, 1);
            return true;
        },
        [] { fail_no_row(); });
    read_at_change = db->changes();
}

void row_cursor::start_window(qint64 start)
{
    window.clear();
    window_start = start;
    last_long.reset();
}

bool row_cursor::window_is_full() const
{
    return window.rows() >= window_rows || window.bytes() >= window_bytes;
}

void row_cursor::fill_window()
{
    constexpr qint64 behind = 100; // walking backwards
    const qint64 first = position < window_start ? std::max<qint64>(0, position - behind) : position;
    const qint64 last = std::min(first + qint64(window_rows), rows);
    start_window(first);
    if (aside)
        fill_from_aside(first, last);
    else
        fill_from_keys(first, last);
}

void row_cursor::fill_from_aside(qint64 first, qint64 last)
{
    for (qint64 number = first; number < last && has_room(); ++number)
        aside->read(size_t(number), window);
}

void row_cursor::fill_from_keys(qint64 first, qint64 last)
{
    db->read_by_keys(
        *of, keys.data() + first, keys.data() + last,
        [this](sqlite3_stmt *from) {
            window.take(from, 1);
            return has_room();
        },
        [this] { window.take_nulls(); }); // gone by another program's hand
}

// Rows before the current one make room for it.
bool row_cursor::has_room()
{
    if (!window_is_full())
        return true;
    const qint64 next = window_start + qint64(window.rows());
    if (next > position)
        return false;
    start_window(next);
    return true;
}

void row_cursor::before_change(const QString &table)
{
    if (live || aside || !of->keyed || rows <= qint64(window.rows()) || table != of->table)
        return;
    auto taken = std::make_unique<row_file>();
    row_block one(of->columns.size());
    const auto set_aside = [&] {
        taken->append(one, 0);
        one.clear();
    };
    db->read_by_keys(
        *of, keys.data(), keys.data() + keys.size(),
        [&](sqlite3_stmt *from) {
            one.take(from, 1);
            set_aside();
            return true;
        },
        [&] {
            one.take_nulls();
            set_aside();
        });
    aside = std::move(taken);
}

void row_cursor::appended(qint64 key)
{
    gap = false;
    if (!loaded) {
        added = key;
        return;
    }
    keys.push_back(key);
    position = rows++;
}

void row_cursor::deleted()
{
    need_rows();
    keys.erase(keys.begin() + position);
    --rows;
    gap = true;
}

}
