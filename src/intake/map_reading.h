// Maps as the parser takes them from the store: table_list_tbl and format_tbl. What they say of a mail: map_fit.h.
#pragma once
#include "intake/map_fit.h"
#include "platform/ado.h"

namespace intake {

mail_map read_mail_map(ado::Recordset &row);        // the current row of table_list_tbl, with its fields
mail_map mail_map_named(const QString &table_name); // 3021 when there is none

// A save that broke off leaves a map whose last field has no column of its own: the field's name that the table lacks,
// or shares with the columns of every map; "" when the map is whole. Such a map takes no mail, as each would fail.
QString field_without_column(const mail_map &map);

}
