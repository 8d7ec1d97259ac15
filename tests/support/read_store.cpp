#include "support/read_store.h"

#include <sqlite3.h>

QStringList read_store(const QString &path, const char *sql)
{
    sqlite3 *store = nullptr;
    sqlite3_stmt *statement = nullptr;
    QStringList lines;
    if (sqlite3_open(path.toUtf8().constData(), &store) != SQLITE_OK ||
        sqlite3_prepare_v2(store, sql, -1, &statement, nullptr) != SQLITE_OK)
        lines += QString("!") + sqlite3_errmsg(store);
    while (statement && sqlite3_step(statement) == SQLITE_ROW)
        lines += QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_column_text(statement, 0)));
    sqlite3_finalize(statement);
    sqlite3_close(store);
    return lines;
}
