// Handling the current mail of a fetch: unsubscribe, duplicate test, storing, moving.
// Next door: fetch.h (the walk), unsubscribe_intake.h, unsubscribe_reply.h, stored_mail.h.
#pragma once
#include <QString>

namespace intake {

// Of fetching.current_item, or of the message at MsgIndex. A failure is logged and leaves the mail where it is;
// one of the network passes on, as it ends the walk.
void write_data();

// The account that a mail is for: its column in session.account_ids, the spare last one when there is none.
int account_addressed(const QString &to);                // To is that address and no other
int account_among_recipients(const QString &recipients); // the address stands among them

}
