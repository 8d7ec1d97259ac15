// What mapmail_frm knows without a control: its separators, its fields and the tests of its "next". A map is looked at
// there and never written; how one is read, and its summary: stored_map.h. The wizard's tests: field_entry.h.
#pragma once
#include "maps/mail_cutting.h"
#include "maps/reference_codes.h"
#include "maps/stored_map.h"

namespace maps {

// The four entries of separator_c behind "Separator". Cutting is the wizard's: cut_sample.
const std::vector<separator_choice> &classic_separators();
QString line_entry(int piece); // "Line3", an entry of its Line_c; piece from 1

// What fcode_type_t and its lists hold: "fixed" with pairs, "dynamic", or "".
struct classic_code {
    QString type;
    QStringList descriptions;
    QStringList codes;
};
classic_code code_of(const stored_field &field);
void set_code(stored_field &field, const classic_code &code); // the way back
code_choice choice_in(const classic_code &code);              // as fcodes_frm opens

// What fcodes_frm asks for before it keeps anything: its two options, and whether a pair was entered. "" when it may.
QString why_no_classic_code(bool fixed, bool dynamic, bool has_values);

// The first test of "next" that fails, as a message, "" without one. shown is the index of the field on screen in
// fields, whose own entry is no duplicate; the number of fields when it is a new one. Trims name in place.
QString why_not_next(QString &name, const QString &position, bool wants_code, const classic_code &code,
                     const std::vector<stored_field> &fields, int shown);

// The field that the summary's "Yes" stands behind: the last one with code values, -1 without one.
int code_field_of(const std::vector<stored_field> &fields);

}
