// The accounts in memory: session.account_ids.
#pragma once
#include <QString>

// Reads email_tbl in its own order. No rows: says "Mail ids not yet configured"; the list is empty then.
void load_accounts();

int account_upper_bound(); // the spare last column; loops run from 1 to below it
