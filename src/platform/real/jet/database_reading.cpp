// Reading what a select gives: its rows, its keys, the rows of some keys.
#include "platform/real/jet/database.h"
#include <sqlite3.h>

namespace jet {

namespace {

// Many small reads under one lock instead of one each.
struct one_read_lock {
    one_read_lock(sqlite3 *of, bool wanted) : db(wanted ? of : nullptr)
    {
        if (db)
            sqlite3_exec(db, "BEGIN", nullptr, nullptr, nullptr);
    }
    ~one_read_lock()
    {
        if (db)
            sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr);
    }
    sqlite3 *db;
};

// Up to here the keys ascend so closely that stepping over a row that is not wanted now and then costs less than
// looking each one up.
const qint64 *end_of_run(const qint64 *first, const qint64 *last)
{
    constexpr quint64 close = 2;
    const qint64 *end = first + 1;
    while (end<last && * end> end[-1] && quint64(*end) - quint64(end[-1]) <= close)
        ++end;
    return end;
}

}

sqlite3_stmt *database::prepared(plan &of, part which)
{
    if (which == part::rows)
        return prepared(of);
    if (!of.keys)
        of.keys = prepare(db, of.keys_sql, of.cacheable);
    return of.keys.get();
}

void database::read(plan &of, QStringView sql, part which, const take_row &take)
{
    need_open();
    write_newest_row();
    lex(sql, tokens);
    sqlite3_stmt *rows = prepared(of, which);
    const reset_after resets(rows);
    bind(of, rows);
    int result = sqlite3_step(rows);
    while (result == SQLITE_ROW && take(rows))
        result = sqlite3_step(rows);
    check(result);
}

void database::read_by_keys(plan &of, const qint64 *first, const qint64 *last, const take_row &take,
                            const std::function<void()> &missing)
{
    need_open();
    write_newest_row();
    if (!of.by_keys)
        of.by_keys = prepare(db, of.by_keys_sql, true);
    const one_read_lock locks(db, !writing && last - first > 1);
    while (first < last) {
        const qint64 *end = end_of_run(first, last);
        if (!read_run(of.by_keys.get(), first, end, take, missing))
            return;
        first = end;
    }
}

bool database::read_run(sqlite3_stmt *rows, const qint64 *first, const qint64 *last, const take_row &take,
                        const std::function<void()> &missing)
{
    const reset_after resets(rows);
    sqlite3_bind_int64(rows, 1, *first);
    sqlite3_bind_int64(rows, 2, last[-1]);
    while (first < last) {
        const int result = sqlite3_step(rows);
        check(result);
        if (result != SQLITE_ROW)
            break;
        const qint64 key = sqlite3_column_int64(rows, 0);
        for (; *first < key; ++first)
            missing();
        if (*first != key)
            continue;
        if (!take(rows))
            return false;
        ++first;
    }
    for (; first < last; ++first)
        missing();
    return true;
}

}
