// The listing of a POP3 mailbox, and how a mail is known again in the next one.
#pragma once
#include <QByteArray>
#include <vector>

namespace pop3 {

struct listed_mail {
    int number = 0;         // of this conversation
    QByteArray key;         // the server's unique id as it came; "" where it gives none that can be trusted
    bool is_shared = false; // another mail of the listing has the same key: nothing is remembered of its text
};

// The lines of UIDL or LIST. Lines that are none, and numbers that came before, are passed over. An id that stands
// twice, or is missing, becomes "": two mails must never be taken for one. A very long one becomes its own hash.
std::vector<listed_mail> listing_in(const QByteArray &lines, bool with_ids);

QByteArray key_of_header(const QByteArray &header); // for servers and mails without an id

constexpr int most_mails = 500000; // what lies beyond is left out

}
