// The pass over stored mails: each one that a map fits becomes a row of that map's table.
// How one mail is tested and cut: map_fit.h. Why one is not taken: fit_reasons.h.
#pragma once
#include <QString>

namespace intake {

// All accounts, all their maps, the mails that no map has taken yet; each row is answered. A failure ends the pass: it
// is logged and the status line tells it, the rows made so far stay, and the account's mails are not marked, so that
// none can be lost. A mail taken with a message_id above 32767 is such a failure. A map that was saved in half takes
// nothing.
bool parse_unprocessed_mails(); // false: it failed

// One map over every mail of its account, taken before or not. No answers, no ceiling. False: it failed.
bool remap_account_mails(const QString &account_table, const QString &map_table);

}
