// Reaching the store: opening it, quoting, running one statement.
// What stands behind: platform/ado.h.
#pragma once
#include "frame/session.h"
#include "platform/ado.h"

// Opens <app>\mailapp.mdb. When it is missing, says so and ends the process.
void open_store();
void open_store_if_closed();
void close_store(); // commits; leaves one file, with no journal beside it

// Trimmed, each single quote doubled, single quotes around. "" gives two quotes. The only escaping in the program.
QString quote_sql(const QString &value);

void run_sql(const QString &sql);

// For statements that ask one thing.
ado::Value first_value(const QString &sql); // of the first row, which must be there
bool finds_row(const QString &sql);
qint64 row_count(const QString &sql);

QStringList column_names(const QString &table); // in the table's own order and spelling; reads none of its rows

// Runs it, and tells the number that it fails with; 0 when it does not. For the few statements whose failure is an
// answer: the making of account tables, and the label run.
quint32 error_of(const QString &sql);
