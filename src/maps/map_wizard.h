// What the Mail Mapping Wizard holds in memory: the chosen mail, how it is cut, the fields so far. Nothing of it is in
// the store before save_map (map_writing.h). map_wizard = {} is a fresh start.
// The tests of a field: field_entry.h. Its reference code: reference_codes.h. The screens: screens/maps/.
#pragma once
#include <QString>
#include <QStringList>
#include <vector>

namespace maps {

enum code_kind { no_code = 0, fixed_values = 1, generated_dynamically = 2 }; // as format_tbl.fcodegen holds it

struct added_field { // a row of MapWHiddenA_frm, in the order of adding
    QString fieldname;
    QString position; // "Line3"
    QString ignore;   // supporting texts joined by "@@@"
    int code = no_code;
    QString value; // the sample value, the supporting texts taken out
};

struct code_value { // a row of MapWHiddenR_frm
    QString fieldname;
    QString description;
    QString code;
};

struct map_wizard_state {
    // The chosen mail: its account's table, its message_id, the account's id, and its subject as stored.
    QString mail_table;
    QString mail_id;
    QString account_id;
    QString map_subject;

    QString map_separator; // "Line", or one of , Tab . - _ : ;

    // The field that is being added: the texts of field_t and Line_c, the piece without line ends.
    QString add_name;
    QString add_position;
    QString add_value;

    // Its reference code, until it is added.
    int code_kind = no_code;
    bool code_values_set = false;
    QStringList code_descs; // parallel to code_codes
    QStringList code_codes;

    bool finish_mode = false; // the preview leads to the save

    std::vector<added_field> MapWHiddenA_frm;
    std::vector<code_value> MapWHiddenR_frm;

    // For the final step: the map that was saved last, and why not all mails came into it, "" when they did.
    QString map_name;
    QString mails_left_behind;
};

extern map_wizard_state map_wizard;

}
