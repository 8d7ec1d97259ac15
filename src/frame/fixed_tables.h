// The tables that every store has from the start. Account and map tables are made beside them.
#pragma once
#include <QStringList>

const QStringList &fixed_tables(); // the two models among them

// An account of this name would take over or drop one of them: it is the name of a fixed table, such a name with "_old"
// behind it, or one that the store keeps for itself.
bool harms_fixed_table(const QString &name);
