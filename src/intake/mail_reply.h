// Answering a mail by hand: what is proposed, how it goes to the Outbox, and its row in sentitems_tbl.
// The screen: screens/intake/Showdetails.h. Answers that go out by themselves: auto_responder.h.
#pragma once
#include "intake/mail_lines.h"
#include <QString>
#include <vector>

namespace intake {

struct mail_reply {
    QString to, subject;
    QString body; // LF line ends; CR LF where it is sent and stored
};

struct sending_account { // a row of email_tbl
    QString query, email;
};

// Of a stored mail to its sender, of a sent one once more to its recipient. Its body quotes what a box would show.
mail_reply reply_to(const mail_text &mail);
bool lacks_subject(const QString &subject); // blank, or only "Re:"

std::vector<sending_account> sending_accounts(); // in the order of email_tbl

// Fails with mapi::unknown_recipient where no mail can be addressed so. When it returns, the mail is durable.
void hand_over_reply(const mail_reply &reply, const sending_account &account);
void log_reply(const mail_reply &reply, const sending_account &account);
QString reply_insert(const mail_reply &reply, const sending_account &account); // that statement

}
