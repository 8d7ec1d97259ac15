// Opening and closing, the pending transaction. Statements: database_statements.cpp.
#include "platform/real/jet/database.h"
#include "platform/outside_effects.h"
#include "platform/real/jet/failures.h"
#include "platform/real/jet/functions.h"
#include "platform/real/jet/store_copy.h"
#include <QAbstractEventDispatcher>
#include <QFile>
#include <sqlite3.h>
#include <unistd.h>

namespace jet {

namespace {

// A commit costs as much as thousands of statements, so the time is the bound that is met in practice.
constexpr int most_statements = 20000;
constexpr std::chrono::milliseconds longest_transaction{500};

// A file of the database program whose dialect is spoken here, which only that program can read.
void refuse_foreign_format(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        fail(ado::store_failure, QStringLiteral("Could not open file '") + path + "': " + file.errorString());
    const QByteArray start = file.read(32).mid(4);
    if (start.startsWith("Standard Jet DB") || start.startsWith("Standard ACE DB"))
        fail(ado::store_failure,
             QStringLiteral("'") + path +
                 "' is a database file of another program's format; it cannot be opened as a store.");
}

}

database::database(const QString &file) : path(file)
{
    open();
    outside_effect = on_outside_effect([this] { barrier(); });
}

database::~database()
{
    forget_outside_effect(outside_effect);
    QObject::disconnect(event_loop);
    commit_quietly();
    close();
    for (open_rows *rows : open_recordsets)
        rows->store_closed();
}

void database::open()
{
    refuse_foreign_format(path);
    try {
        const int result = sqlite3_open_v2(QFile::encodeName(path).constData(), &db,
                                           SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
        if (result != SQLITE_OK)
            throw run_time_error(failure_of(db, result));
        sqlite3_extended_result_codes(db, 1);
        sqlite3_busy_timeout(db, 5000);
        // An unknown quoted name is an error, never a text.
        sqlite3_db_config(db, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
        sqlite3_db_config(db, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
        add_functions(db, &function_failure);
        run("PRAGMA foreign_keys=OFF");
        run("PRAGMA synchronous=FULL");
        run("PRAGMA cache_size=-16000");
        tables.load(db);
        // The cut journal is synced; a deleted one would not be, and a power cut could bring it back.
        run("PRAGMA journal_mode=TRUNCATE");
    } catch (const run_time_error &failure) {
        sqlite3_close(std::exchange(db, nullptr));
        throw run_time_error{failure.number, failure.description + " '" + path + "'"};
    }
}

void database::close()
{
    for (open_rows *rows : open_recordsets)
        rows->release_statements();
    plans.clear();
    newest.forget_statements();
    repeats.clear();
    if (!db)
        return;
    sqlite3_exec(db, "PRAGMA journal_mode=DELETE", nullptr, nullptr, nullptr); // leaves no empty journal behind
    sqlite3_close(std::exchange(db, nullptr));
}

void database::need_open()
{
    if (!db)
        open();
}

// A file opened while it could not be written stays so for SQLite, even when it can be written again.
void database::open_again_when_writable()
{
    if (sqlite3_db_readonly(db, "main") != 1 || access(QFile::encodeName(path).constData(), W_OK) != 0)
        return;
    close();
    open();
}

void database::load_schema_when_stale()
{
    if (!stale)
        return;
    plans.clear();
    newest.forget_statements();
    repeats.clear();
    for (open_rows *rows : open_recordsets)
        rows->release_statements();
    tables.load(db);
    stale = false;
}

void database::run(const QByteArray &sql)
{
    const int result = sqlite3_exec(db, sql.constData(), nullptr, nullptr, nullptr);
    if (result != SQLITE_OK)
        check(result);
}

// Some errors (a full disk, a failing one) make SQLite roll back all that was pending. The state is then that of a
// kill before the last barrier, so nothing of which the outside saw a consequence is lost.
void database::check(int result)
{
    if (result == SQLITE_OK || result == SQLITE_ROW || result == SQLITE_DONE)
        return;
    run_time_error failure = failure_of(db, result);
    if (function_failure)
        failure = *std::exchange(function_failure, std::nullopt);
    if (writing && sqlite3_get_autocommit(db)) {
        writing = false;
        stale = true;
        newest.drop();
        writes_were_lost();
        failure.number = ado::store_failure;
    }
    throw run_time_error(failure);
}

void database::begin_write()
{
    raise_deferred();
    need_open();
    write_newest_row();
    load_schema_when_stale();
    ++changes_begun;
    if (writing) {
        const bool is_young =
            ++statements < most_statements && std::chrono::steady_clock::now() - begun < longest_transaction;
        if (is_young || commits_are_held())
            return;
        commit();
    }
    if (!event_loop)
        watch_event_loop();
    open_again_when_writable();
    if (sqlite3_db_readonly(db, "main") == 1) // SQLite would begin a transaction that cannot write
        fail(ado::store_failure,
             QStringLiteral("Operation must use an updateable query: '") + path + "' cannot be written.");
    run("BEGIN IMMEDIATE");
    writing = true;
    statements = 1;
    begun = std::chrono::steady_clock::now();
}

void database::commit()
{
    if (!writing)
        return;
    write_newest_row();
    run("COMMIT");
    writing = false;
}

// For callers that nobody could hand the failure to; it is raised by the next statement when something was lost.
void database::commit_quietly()
{
    try {
        commit();
    } catch (const run_time_error &failure) {
        if (!writing)
            deferred = failure;
    }
}

void database::raise_deferred()
{
    if (deferred)
        throw run_time_error(*std::exchange(deferred, std::nullopt));
}

void database::barrier()
{
    raise_deferred();
    commit();
}

void database::watch_event_loop()
{
    if (QAbstractEventDispatcher *loop = QAbstractEventDispatcher::instance())
        event_loop = QObject::connect(loop, &QAbstractEventDispatcher::aboutToBlock, loop, [this] {
            if (!commits_are_held())
                commit_quietly();
        });
}

void database::need_sound()
{
    barrier();
    need_open();
    int result = SQLITE_OK;
    if (is_sound(db, &result))
        return;
    if (result != SQLITE_OK && (result & 0xff) != SQLITE_CORRUPT)
        check(result); // a locked file is not a damaged one
    fail(ado::store_failure, QStringLiteral("The store '") + path + "' is damaged.");
}

void database::copy_to(const QString &target, const ado::Connection::told_pages &told)
{
    barrier();
    need_open();
    copy_store_file(db, path, target, told);
}

}
