// Checks of what the user types. They are silent: each caller has a message of its own.
#pragma once
#include <QString>

bool valid_email(const QString &address);      // not trimmed; at least 7 characters, exactly one "@"
bool valid_name(const QString &name);          // a letter, then letters, digits, underscore
bool name_passes(QString &name);               // trims it in place, then valid_name: of maps, their fields, a rename
bool valid_query_name(const QString &name);    // of an account: also "-" and ".", and no word of statements
bool reserved_word_free(const QString &value); // true: no reserved word
