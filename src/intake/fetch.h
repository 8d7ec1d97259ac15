// Fetching form mail: walk the Inbox, hand each mail of ours to write_data, move it.
// Next door: write_data.h (one mail), unsubscribe_intake.h, duplicate_mail.h, map_parser.h (what follows).
#pragma once
#include <QString>

namespace intake {

void fetch_mail();       // needs choose_mail_source; counts into fetching.mail_count
QString fetch_summary(); // "3 of 20 mails processed"

// What loading the Mail Auditor does when it fetches: source, fetch, (caller's step), parse.
void fetch_and_parse();

}
