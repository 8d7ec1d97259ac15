// Checks of what the user types. They are silent: each caller has a message of its own.
#pragma once
#include <QString>

bool valid_email(const QString &address);      // not trimmed; at least 7 characters, exactly one "@"
bool valid_name(const QString &name);          // of a map field: a letter, then letters, digits, underscore
bool valid_query_name(const QString &name);    // of an account or map: also "-" and ".", and no reserved word
bool reserved_word_free(const QString &value); // true: no reserved word
