// The accounts, as they are stored and in memory: session.account_ids.
#pragma once
#include <QString>
#include <vector>

struct stored_account {
    QString id, query, email, table_name;
};
std::vector<stored_account> stored_accounts(); // email_tbl in its own order

// Reads email_tbl in its own order. No rows: says "Mail ids not yet configured"; the list is empty then.
void load_accounts();

int account_upper_bound(); // the spare last column; loops run from 1 to below it

// The row of a new account; its table will have its name. Nothing is made or tested here.
void add_account_row(const QString &query, const QString &email);
