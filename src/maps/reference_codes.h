// The reference code of the field under construction, as the screen MapWRefcode_frm shows and keeps it. The codes of a
// saved map's field: classic_map.h.
#pragma once
#include <QString>
#include <QStringList>

namespace maps {

struct code_choice {
    int kind = 0; // 0: neither option is set
    QStringList descriptions;
    QStringList codes;
};

// What the screen opens with: the code of the field being changed, by name, case-blind. Nothing for a new field; for a
// field with any other kind than fixed values: dynamic.
code_choice choice_of(const QString &changed);

// The fixed values of the field of that name, case-blind, as the wizard holds them so far.
code_choice fixed_values_of(const QString &fieldname);

// "Please enter description", "Please enter code", or "".
QString why_no_code_value(const QString &description, const QString &code);

// Keeps what was submitted: fixed values with their pairs, however few; anything else is dynamic.
void submit_code(bool fixed, const QStringList &descriptions, const QStringList &codes);

// Cancel: no values are given. The kind stays as it was, and is saved with the field if it is added all the same.
void cancel_code();

}
