// A store of more rows than a recordset holds at once, and walks over them.
#pragma once
#include "support/test_store.h"
#include <functional>
#include <memory>

constexpr int many_rows = 1700; // several windows

QString padded(int number);
QString mixed(int number); // in no order, and none twice

// The accounts orders and sales; in orders the mails 1 to many_rows: the number as subject, mixed as sender, what it
// leaves when divided by ten as status.
std::unique_ptr<test_store> empty_orders();
void fill_orders(test_store &store);
QStringList numbers_where(const std::function<bool(int)> &wanted);

// The first column of all rows, "-" for Null.
QString first_text(ado::Recordset &rows);
QStringList forward(ado::Recordset &rows);
QStringList backward(ado::Recordset &rows);
QStringList reversed(QStringList texts);
void go_to(ado::Recordset &rows, int number); // from 1
void open_rows(ado::Recordset &rows, const QString &sql, test_store &store, bool live);
