#include "support/raw_store.h"

#include <QFile>
#include <sqlite3.h>

raw_store::raw_store(const QString &path)
{
    if (sqlite3_open_v2(QFile::encodeName(path).constData(), &db, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK)
        qFatal("cannot open %s", qPrintable(path));
}

raw_store::~raw_store()
{
    sqlite3_close(db);
}

void raw_store::run(const char *sql) const
{
    if (sqlite3_exec(db, sql, nullptr, nullptr, nullptr) != SQLITE_OK)
        qFatal("%s: %s", sql, sqlite3_errmsg(db));
}

QString raw_store::text(const char *sql) const
{
    QString all;
    const auto add = [](void *into, int, char **texts, char **) {
        *static_cast<QString *>(into) += QString::fromUtf8(texts[0]) + u' ';
        return 0;
    };
    const bool good = sqlite3_exec(db, sql, add, &all, nullptr) == SQLITE_OK;
    return good ? all.trimmed() : "(failed: " + QString::fromUtf8(sqlite3_errmsg(db)) + ")";
}

QString accounts_in(const QString &store)
{
    return raw_store(store).text("select query from email_tbl");
}

void leave_crashed(const QString &store, const QString &crashed, const char *change)
{
    const raw_store writing(store);
    writing.run("create table filler(t text)");
    writing.run("with recursive n(i) as (select 1 union all select i+1 from n where i<3000) "
                "insert into filler select 'before' || i from n");
    writing.run("pragma cache_size=1; pragma cache_spill=1; begin");
    writing.run(change);
    if (!QFile::copy(store, crashed) || !QFile::copy(store + "-journal", crashed + "-journal"))
        qFatal("cannot copy %s", qPrintable(store));
}
