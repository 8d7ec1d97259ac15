// Tidying a map table before it is shown, merged or labelled, and after an import.
#pragma once
#include <QString>

// Null texts become "", a missing date becomes now, a missing status "new".
void normalise_map_rows(const QString &table);
