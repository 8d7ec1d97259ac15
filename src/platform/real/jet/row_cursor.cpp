#include "platform/real/jet/row_cursor.h"
#include "platform/real/jet/failures.h"
#include <algorithm>
#include <sqlite3.h>

namespace jet {

namespace {

constexpr qint64 window_rows = 500;
constexpr qint64 window_units = 2 << 20; // texts in a window, in UTF-16 units

qint64 units_of(const row &values)
{
    qint64 units = 0;
    for (const ado::Value &value : values)
        if (const auto *text = std::get_if<QString>(&value.held))
            units += text->size();
    return units;
}

[[noreturn]] void fail_no_row()
{
    fail(ado::no_current_record, QStringLiteral("Either BOF or EOF is True, or the current record has been deleted. "
                                                "Requested operation requires a current record."));
}

}

row_cursor::row_cursor(database &store, std::shared_ptr<plan> select, const QString &statement, bool stays_live)
    : db(&store), of(std::move(select)), sql(statement), live(stays_live && of->keyed)
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

row row_cursor::read_row(sqlite3_stmt *from, int first_column) const
{
    row values;
    values.reserve(of->columns.size());
    for (size_t i = 0; i < of->columns.size(); ++i)
        values.push_back(column_value(from, first_column + int(i), of->columns[i].type));
    return values;
}

void row_cursor::load()
{
    if (live || !of->keys_sql.isEmpty())
        db->read(*of, sql, database::part::keys, [this](sqlite3_stmt *from) {
            keys.push_back(sqlite3_column_int64(from, 0));
            return true;
        });
    else
        load_first_rows();
    rows = of->keyed ? qint64(keys.size()) : qint64(window.size());
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

// The first window comes with the keys, so that a short table is read in one go.
void row_cursor::load_first_rows()
{
    qint64 units = 0;
    db->read(*of, sql, database::part::rows, [&](sqlite3_stmt *from) {
        if (of->keyed)
            keys.push_back(sqlite3_column_int64(from, 0));
        const bool fits = qint64(window.size()) < window_rows && units < window_units &&
                          qint64(window.size()) + 1 == qint64(keys.size());
        if (fits || !of->keyed) {
            window.push_back(read_row(from, of->keyed ? 1 : 0));
            units += units_of(window.back());
        }
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

const row &row_cursor::current()
{
    const qint64 key = current_key();
    if (live) {
        if (window.empty() || window_start != key || read_at_change != db->changes()) {
            window.clear();
            db->read_by_keys(
                *of, &key, &key + 1,
                [this](sqlite3_stmt *from) {
                    window.push_back(read_row(from, 0));
                    return true;
                },
                [] { fail_no_row(); });
            window_start = key;
            read_at_change = db->changes();
        }
        return window.front();
    }
    if (position < window_start || position >= window_start + qint64(window.size()))
        fill_window();
    return window[size_t(position - window_start)];
}

void row_cursor::fill_window()
{
    constexpr qint64 behind = 100; // walking backwards
    const qint64 first = position < window_start ? std::max<qint64>(0, position - behind) : position;
    const qint64 last = std::min(first + window_rows, rows);
    window.clear();
    window_start = first;
    if (!aside)
        return fill_from_keys(size_t(first), size_t(last));
    qint64 units = 0;
    for (qint64 i = first; i < last && (units < window_units || i <= position); ++i) {
        window.push_back(aside->read(size_t(i)));
        units += units_of(window.back());
    }
}

void row_cursor::fill_from_keys(size_t first, size_t last)
{
    qint64 units = 0;
    db->read_by_keys(
        *of, keys.data() + first, keys.data() + last,
        [&](sqlite3_stmt *from) {
            window.push_back(read_row(from, 0));
            units += units_of(window.back());
            return units < window_units || window_start + qint64(window.size()) <= position;
        },
        [this] { window.push_back(row(of->columns.size())); }); // gone by another program's hand
}

void row_cursor::before_change(const QString &table)
{
    if (live || aside || !of->keyed || rows <= qint64(window.size()) || table != of->table)
        return;
    auto taken = std::make_unique<row_file>();
    db->read_by_keys(
        *of, keys.data(), keys.data() + keys.size(),
        [&](sqlite3_stmt *from) {
            taken->append(read_row(from, 0));
            return true;
        },
        [&] { taken->append(row(of->columns.size())); });
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
