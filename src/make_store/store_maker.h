// Makes a fresh store from the delivered texts: the tables, the rows, the label stocks.
#pragma once
#include <string>

// delivered: the folder that holds store/schema.sql, store/rows.sql and labels/label_stock.csv. An older file of the
// target's name is replaced when the new one is whole. Gives what went wrong, or an empty text.
std::string make_store(const std::string &target, const std::string &delivered);
