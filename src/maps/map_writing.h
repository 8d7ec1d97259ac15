// Saving a map: its rows, its table, its columns, one statement after another and nothing rolled back; then the stored
// mails are brought over. What is saved: map_wizard.h. The passes over mails: intake/map_parser.h.
#pragma once
#include "frame/messages.h"
#include <QString>
#include <optional>

namespace maps {

// The name's tests on mapwizardsave_frm, in their order: nothing when it passes. Trims name in place.
struct map_name_fault {
    QString message;
    message_icon icon;
};
std::optional<map_name_fault> why_no_map_name(QString &name);

// What the store will refuse of the map under construction, whatever its name: a sentence for beside mapname_t, "" when
// nothing is known. Saving is not stopped by it.
QString why_save_would_fail();

// Writes table_list_tbl, the map's table, then the fields from the last added to the first, each with its codes and
// its column. A failure throws and leaves half a map; a kill leaves the whole one or none.
void write_map(const QString &name);

// The account's mails into the new map, taken before or not; then all that is still unprocessed. Tells its progress.
// False: one of the two passes failed, which is logged. Without its account it throws.
bool bring_mails_over(const QString &name);

}
