// One open store file: its SQLite connection, the tables it knows, the translated statements, the pending transaction.
//
// Writing is lazy: the first write begins a transaction, barrier() ends it. A barrier comes before every effect outside
// the store (platform/outside_effects.h, which can hold commits back), when the event loop is about to wait, and every
// half second or twenty thousand statements of a long run. A killed process has thus done a prefix of its statements,
// and none of them can be missing whose consequence was seen outside.
#pragma once
#include "platform/real/jet/lexer.h"
#include "platform/real/jet/newest_row.h"
#include "platform/real/jet/plan_cache.h"
#include "platform/real/jet/repeated_statement.h"
#include "platform/real/jet/schema.h"
#include <QObject>
#include <chrono>
#include <functional>
#include <optional>

namespace jet {

// An open recordset, told of what may disturb it.
class open_rows {
public:
    virtual ~open_rows() = default;
    virtual void before_change(const QString &table) = 0; // rows not read yet must be taken now
    virtual void release_statements() = 0;
    virtual void store_closed() = 0; // the database is going; nothing may be asked of it
};

class database {
public:
    explicit database(const QString &file); // store_failure when it cannot be opened
    ~database();                            // commits and closes
    database(const database &) = delete;
    database &operator=(const database &) = delete;

    qint64 execute(QStringView sql); // the number of rows changed

    std::shared_ptr<plan> plan_of(QStringView sql);
    enum class part { rows, keys };
    // Steps through a select; take says whether to go on. A keyed one gives the key, then the columns.
    using take_row = std::function<bool(sqlite3_stmt *)>;
    void read(plan &of, QStringView sql, part which, const take_row &take);
    // The rows with these keys, one after another, until take says stop; missing is told of keys without a row. Keys
    // that lie close together and ascend are read in one go.
    void read_by_keys(plan &of, const qint64 *first, const qint64 *last, const take_row &take,
                      const std::function<void()> &missing);

    // Through a recordset: the columns at these places, already converted. insert gives the new row's key.
    qint64 insert(plan &through, const std::vector<int> &places, const std::vector<ado::Value> &values);
    void update(plan &through, qint64 key, const std::vector<int> &places, const std::vector<ado::Value> &values);
    void delete_row(plan &through, qint64 key);

    const table &table_of(const plan &which) const;
    void add(open_rows *rows) { open_recordsets.push_back(rows); }
    void remove(open_rows *rows) { std::erase(open_recordsets, rows); }

    void need_sound(); // throws when a page is not what it should be
    void barrier();
    void copy_to(const QString &target, const ado::Connection::told_pages &told); // consistent and durable, one file
    quint64 changes() const { return changes_begun; } // grows with each statement that writes

private:
    void open();
    void need_open(); // after a failed reopening: tries again, and fails as that did
    void close();
    void load_schema_when_stale();
    void open_again_when_writable();
    void watch_event_loop();
    void raise_deferred();

    void begin_write();
    void commit();
    void commit_quietly();
    void check(int result); // throws unless the result is a good one
    void run(const QByteArray &sql);

    std::shared_ptr<plan> plan_of_tokens();
    sqlite3_stmt *prepared(plan &of);
    sqlite3_stmt *prepared(plan &of, part which);
    bool read_run(sqlite3_stmt *rows, const qint64 *first, const qint64 *last, const take_row &take,
                  const std::function<void()> &missing);
    void bind(const plan &of, sqlite3_stmt *to);
    void bind_one(const binding &what, int place);
    void bind_literal(const binding &what, int place);
    void bind_moment(const binding &what, int place);
    qint64 change(plan &of);
    qint64 put_off(plan &of); // a change of the newest row, see newest_row.h
    void write_newest_row();
    qint64 define(plan &of);
    void tell_recordsets(const QString &table);
    qint64 step_change(sqlite3_stmt *which);

    QString path;
    sqlite3 *db = nullptr;
    std::optional<run_time_error> function_failure; // left by an SQL function
    std::optional<run_time_error> deferred;         // of a commit that nobody asked for
    schema tables;
    plan_cache plans;
    token_list tokens;
    binder parameters;
    newest_row newest;
    repeated_statements repeats;
    std::vector<open_rows *> open_recordsets;

    bool writing = false;
    bool stale = false; // the schema changed under what is kept of it
    quint64 changes_begun = 0;
    int statements = 0;
    std::chrono::steady_clock::time_point begun;
    int outside_effect = 0;
    QMetaObject::Connection event_loop;
};

}
