#include "platform/real/jet/failures.h"
#include <sqlite3.h>

namespace jet {

void fail(quint32 number, const QString &description)
{
    throw run_time_error{number, description};
}

void fail_syntax(const QString &near_text)
{
    fail(ado::syntax_error, near_text.isEmpty() ? QStringLiteral("Syntax error in query.")
                                                : QStringLiteral("Syntax error near '") + near_text.left(60) + "'.");
}

void fail_mismatch()
{
    fail(ado::type_mismatch, QStringLiteral("Data type conversion error."));
}

void fail_criteria()
{
    fail(ado::type_mismatch, QStringLiteral("Data type mismatch in criteria expression."));
}

void fail_no_column(const QString &name)
{
    fail(ado::unknown_column,
         QStringLiteral("No value given for one or more required parameters. Unknown column '") + name + "'.");
}

void fail_too_long()
{
    fail(ado::value_too_long, QStringLiteral("The field is too small to accept the amount of data you attempted to "
                                             "add.  Try inserting or pasting less data."));
}

run_time_error failure_of(sqlite3 *db, int result_code)
{
    const QString said = db ? QString::fromUtf8(sqlite3_errmsg(db)) : QString::fromUtf8(sqlite3_errstr(result_code));
    const int extended = db ? sqlite3_extended_errcode(db) : result_code;
    switch (result_code & 0xff) {
    case SQLITE_CONSTRAINT:
        if (extended == SQLITE_CONSTRAINT_CHECK)
            return {ado::value_too_long, QStringLiteral("The field is too small to accept the amount of data you "
                                                        "attempted to add.  Try inserting or pasting less data.")};
        if (extended == SQLITE_CONSTRAINT_TRIGGER) // one of another program's, which says what it minds
            return {ado::store_failure, said};
        return {ado::duplicate_key, QStringLiteral("The change would give two rows the same key: ") + said};
    case SQLITE_FULL:
        return {ado::store_failure, QStringLiteral("The disk is full: what was written since the last safe point is "
                                                   "undone (") +
                                        said + ")."};
    case SQLITE_READONLY:
        return {ado::store_failure, QStringLiteral("Operation must use an updateable query: the store or its folder "
                                                   "cannot be written (") +
                                        said + ")."};
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return {ado::store_failure, QStringLiteral("The store is locked by another program.")};
    case SQLITE_NOTADB:
        return {ado::store_failure, QStringLiteral("Unrecognized database format.")};
    case SQLITE_CANTOPEN:
        return {ado::store_failure, QStringLiteral("The store or its folder cannot be opened (") + said + ")."};
    default:
        return {ado::store_failure, said};
    }
}

}
