#include "platform/real/imap/mail_cache.h"
#include "platform/real/loseable_file.h"
#include <QFile>
#include <sqlite3.h>

namespace imap {

namespace {

constexpr const char *schema = "pragma journal_mode=wal;"
                               "pragma synchronous=normal;"
                               "begin;"
                               "create table if not exists folder(id integer primary key, name blob unique not null,"
                               " uid_validity integer not null, next_uid integer not null, change integer not null);"
                               "create table if not exists mail(folder integer not null, uid integer not null,"
                               " size integer not null, received integer not null, addresses blob not null,"
                               " subject blob not null, primary key(folder, uid)) without rowid;"
                               "commit;";

constexpr int busy_ms = 1000;

// One statement; state is SQLITE_OK or the first failure among those that share it.
class statement {
public:
    statement(sqlite3 *in, const char *sql, int &shared_state) : state(shared_state)
    {
        note(sqlite3_prepare_v2(in, sql, -1, &handle, nullptr));
    }
    ~statement() { sqlite3_finalize(handle); }
    statement(const statement &) = delete;
    statement &operator=(const statement &) = delete;

    statement &bind(int column, qint64 value)
    {
        note(sqlite3_bind_int64(handle, column, value));
        return *this;
    }
    statement &bind(int column, const QByteArray &value) // must live until the step
    {
        note(sqlite3_bind_blob(handle, column, value.isNull() ? "" : value.constData(), int(value.size()),
                               SQLITE_STATIC));
        return *this;
    }
    bool step() // true: a row is there
    {
        if (state != SQLITE_OK)
            return false;
        const int result = sqlite3_step(handle);
        if (result == SQLITE_ROW)
            return true;
        note(sqlite3_reset(handle));
        return false;
    }
    void finish()
    {
        while (step()) {
        }
    }
    qint64 number(int column) { return sqlite3_column_int64(handle, column); }
    QByteArray bytes(int column)
    {
        const auto *data = static_cast<const char *>(sqlite3_column_blob(handle, column));
        return data ? QByteArray(data, sqlite3_column_bytes(handle, column)) : QByteArray();
    }

private:
    void note(int result)
    {
        if (state == SQLITE_OK)
            state = result;
    }
    sqlite3_stmt *handle = nullptr;
    int &state;
};

int read_folder(sqlite3 *file, const QByteArray &folder, folder_state &state, mail_list &into)
{
    int result = SQLITE_OK;
    statement one(file, "select id, uid_validity, next_uid, change from folder where name=?", result);
    if (!one.bind(1, folder).step())
        return result;
    state = {quint32(one.number(1)), quint32(one.number(2)), quint64(one.number(3))};
    statement mails(file, "select uid, size, received, addresses, subject from mail where folder=? order by uid",
                    result);
    mails.bind(1, one.number(0));
    while (mails.step())
        into.add({quint32(mails.number(0)), quint32(mails.number(1)), mails.number(2), mails.bytes(3), mails.bytes(4),
                  true});
    into.set_next_uid(state.next_uid);
    into.take_removed();
    return result;
}

int write_folder(sqlite3 *file, const QByteArray &folder, const folder_state &state)
{
    int result = SQLITE_OK;
    statement(file, "delete from mail where folder in (select id from folder where name=? and uid_validity<>?)", result)
        .bind(1, folder)
        .bind(2, state.uid_validity)
        .finish();
    statement(file,
              "insert into folder(name, uid_validity, next_uid, change) values(?,?,?,?)"
              " on conflict(name) do update set uid_validity=excluded.uid_validity,"
              " next_uid=excluded.next_uid, change=excluded.change",
              result)
        .bind(1, folder)
        .bind(2, state.uid_validity)
        .bind(3, state.next_uid)
        .bind(4, qint64(state.highest_change))
        .finish();
    return result;
}

int write_mails(sqlite3 *file, const QByteArray &folder, const std::vector<const listed_mail *> &added,
                const std::vector<quint32> &removed)
{
    int result = SQLITE_OK;
    statement named(file, "select id from folder where name=?", result);
    const qint64 number = named.bind(1, folder).step() ? named.number(0) : 0;
    statement insert(file, "insert or replace into mail values(?,?,?,?,?,?)", result);
    for (const listed_mail *mail : added) {
        insert.bind(1, number).bind(2, mail->uid).bind(3, mail->size).bind(4, mail->received);
        insert.bind(5, mail->to).bind(6, mail->subject).finish();
        if (result != SQLITE_OK)
            return result;
    }
    statement erase(file, "delete from mail where folder=? and uid=?", result);
    for (const quint32 uid : removed)
        erase.bind(1, number).bind(2, uid).finish();
    return result;
}

}

mail_cache::mail_cache(QString file_path) : path(std::move(file_path)) {}

mail_cache::~mail_cache()
{
    close();
}

void mail_cache::close()
{
    sqlite3_close_v2(std::exchange(file, nullptr));
}

int mail_cache::run(const char *sql)
{
    return sqlite3_exec(file, sql, nullptr, nullptr, nullptr);
}

int mail_cache::try_open()
{
    const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX;
    loseable_file::make_private(path);
    const int result = sqlite3_open_v2(QFile::encodeName(path).constData(), &file, flags, nullptr);
    if (result != SQLITE_OK)
        return result;
    sqlite3_busy_timeout(file, busy_ms);
    return run(schema);
}

// Behind a failure: only a file that is itself at fault is thrown away.
bool mail_cache::is_begun_anew(int result)
{
    close();
    if (!loseable_file::is_spoilt(result))
        return false;
    loseable_file::remove(path);
    if (try_open() == SQLITE_OK)
        return true;
    close();
    return false;
}

// Somebody may take the file away while we have it open.
bool mail_cache::is_still_there() const
{
    int moved = 0;
    return sqlite3_file_control(file, "main", SQLITE_FCNTL_HAS_MOVED, &moved) != SQLITE_OK || moved == 0;
}

bool mail_cache::opened()
{
    if (file && is_still_there())
        return true;
    close();
    const int result = try_open();
    return result == SQLITE_OK || is_begun_anew(result);
}

folder_state mail_cache::read(const QByteArray &folder, mail_list &into)
{
    folder_state state;
    into.clear();
    missed.insert(folder);
    if (!opened())
        return state;
    const int result = read_folder(file, folder, state, into);
    if (result != SQLITE_OK) {
        into.clear();
        state = {};
    }
    if (result == SQLITE_OK || is_begun_anew(result))
        missed.remove(folder);
    return state;
}

int mail_cache::try_write(const QByteArray &folder, const folder_state &state,
                          const std::vector<const listed_mail *> &added, const std::vector<quint32> &removed)
{
    int result = run("begin immediate");
    if (result == SQLITE_OK)
        result = write_folder(file, folder, state);
    if (result == SQLITE_OK)
        result = write_mails(file, folder, added, removed);
    return result == SQLITE_OK ? run("commit") : result;
}

void mail_cache::write(const QByteArray &folder, const folder_state &state,
                       const std::vector<const listed_mail *> &added, const std::vector<quint32> &removed)
{
    if (missed.contains(folder))
        return;
    missed.insert(folder);
    if (!opened())
        return;
    const int result = try_write(folder, state, added, removed);
    if (result == SQLITE_OK || is_begun_anew(result))
        missed.remove(folder);
}

}
