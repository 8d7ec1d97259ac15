// The statements that the program sends, each with its effect: what a select gives, or what a look at the store gives
// after a change. Every row starts from the same small store.
#pragma once
#include "support/test_store.h"

// Fills a fresh store: accounts orders (1), sales (2), info (3); the map cust (table_id 7, of account 3) with the
// columns city, email and first_name; and a few rows in every table that a statement looks at.
void fill_sample_store(test_store &store);

// The columns of a data-driven test, and one row of it. look: empty when the statement is a select itself.
void effect_columns();
void effect(const char *name, const QString &statement, const QString &look, const QString &expected);
// Runs the row that is current.
void check_effect();

// All rows of a select: values joined by "|", rows by "/"; Null is "-".
QString rows_of(test_store &store, const QString &select);
