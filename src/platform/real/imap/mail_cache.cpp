#include "platform/real/imap/mail_cache.h"
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

// One statement; good() tells whether all went well so far.
class statement {
public:
    statement(sqlite3 *in, const char *sql) { state = sqlite3_prepare_v2(in, sql, -1, &handle, nullptr); }
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
        state = sqlite3_reset(handle);
        return false;
    }
    bool done()
    {
        while (step()) {
        }
        return good();
    }
    bool good() const { return state == SQLITE_OK; }
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
    int state = SQLITE_OK;
};

qint64 folder_number(sqlite3 *file, const QByteArray &folder)
{
    statement one(file, "select id from folder where name=?");
    return one.bind(1, folder).step() ? one.number(0) : 0;
}

bool read_folder(sqlite3 *file, const QByteArray &folder, folder_state &state, mail_list &into)
{
    statement one(file, "select id, uid_validity, next_uid, change from folder where name=?");
    if (!one.bind(1, folder).step())
        return one.good();
    state = {quint32(one.number(1)), quint32(one.number(2)), quint64(one.number(3))};
    statement mails(file, "select uid, size, received, addresses, subject from mail where folder=? order by uid");
    mails.bind(1, one.number(0));
    while (mails.step())
        into.add({quint32(mails.number(0)), quint32(mails.number(1)), mails.number(2), mails.bytes(3), mails.bytes(4),
                  true});
    into.set_next_uid(state.next_uid);
    into.take_removed();
    return mails.good();
}

bool write_mails(sqlite3 *file, qint64 folder, const std::vector<const listed_mail *> &added,
                 const std::vector<quint32> &removed)
{
    statement insert(file, "insert or replace into mail values(?,?,?,?,?,?)");
    for (const listed_mail *mail : added) {
        insert.bind(1, folder).bind(2, mail->uid).bind(3, mail->size).bind(4, mail->received);
        if (!insert.bind(5, mail->to).bind(6, mail->subject).done())
            return false;
    }
    statement erase(file, "delete from mail where folder=? and uid=?");
    for (const quint32 uid : removed)
        if (!erase.bind(1, folder).bind(2, uid).done())
            return false;
    return insert.good() && erase.good();
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

bool mail_cache::run(const char *sql)
{
    return sqlite3_exec(file, sql, nullptr, nullptr, nullptr) == SQLITE_OK;
}

bool mail_cache::try_open()
{
    const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX;
    if (sqlite3_open_v2(QFile::encodeName(path).constData(), &file, flags, nullptr) != SQLITE_OK)
        return false;
    sqlite3_busy_timeout(file, 1000);
    return run(schema);
}

void mail_cache::begin_anew()
{
    close();
    for (const char *end : {"", "-wal", "-shm"})
        QFile::remove(path + QLatin1String(end));
    unusable = !try_open();
}

// Somebody may take the file away while we have it open.
bool mail_cache::is_still_there() const
{
    int moved = 0;
    return sqlite3_file_control(file, "main", SQLITE_FCNTL_HAS_MOVED, &moved) != SQLITE_OK || moved == 0;
}

bool mail_cache::opened()
{
    if (unusable || (file && is_still_there()))
        return !unusable;
    close();
    if (!try_open())
        begin_anew();
    return !unusable;
}

folder_state mail_cache::read(const QByteArray &folder, mail_list &into)
{
    folder_state state;
    into.clear();
    if (opened() && !read_folder(file, folder, state, into)) {
        into.clear();
        state = {};
        begin_anew();
    }
    return state;
}

bool mail_cache::try_write(const QByteArray &folder, const folder_state &state,
                           const std::vector<const listed_mail *> &added, const std::vector<quint32> &removed)
{
    const bool forgets = statement(file, "delete from mail where folder in"
                                         " (select id from folder where name=? and uid_validity<>?)")
                             .bind(1, folder)
                             .bind(2, state.uid_validity)
                             .done();
    const bool told =
        forgets && statement(file, "insert into folder(name, uid_validity, next_uid, change) values(?,?,?,?)"
                                   " on conflict(name) do update set uid_validity=excluded.uid_validity,"
                                   " next_uid=excluded.next_uid, change=excluded.change")
                       .bind(1, folder)
                       .bind(2, state.uid_validity)
                       .bind(3, state.next_uid)
                       .bind(4, qint64(state.highest_change))
                       .done();
    return told && write_mails(file, folder_number(file, folder), added, removed);
}

void mail_cache::write(const QByteArray &folder, const folder_state &state,
                       const std::vector<const listed_mail *> &added, const std::vector<quint32> &removed)
{
    if (!opened())
        return;
    const bool good = run("begin immediate") && try_write(folder, state, added, removed) && run("commit");
    if (!good)
        begin_anew();
}

}
