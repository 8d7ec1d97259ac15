// Fetching form mail: walk the Inbox, hand each mail of ours to write_data.
// Next door: mail_source.h (which client), write_data.h (one mail), map_parser.h (what follows).
#pragma once
#include <QString>

namespace intake {

void fetch_mail();          // needs choose_mail_source; counts into fetching.mail_count
void finish_fetch();        // hears what became of the moves that were still under way; behind the parser
QString fetch_summary();    // "3 of 20 mails processed"
bool fetch_was_cancelled(); // all that was stored is as after a whole fetch

// Throws the failure of the network that ended the walk before its end, if one did. What came before is stored, so
// this is for when it has become rows.
void raise_cut();

// Choosing the source, fetching and parsing without a screen, as loading the Mail Auditor does it. A failure is logged;
// true: there was none outside the single mails.
bool fetch_and_parse();

}
