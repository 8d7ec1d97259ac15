// The words that no account, map or column may be called, as the store's dialect reserves them.
#pragma once
#include <QStringList>

const QStringList &reserved_words();       // 203, with the list's own spellings
const QStringList &reserved_query_words(); // 12, upper case ("FROM" stands twice)
