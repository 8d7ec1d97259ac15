// The head of a mail: where it ends, and its raw fields. Only the fields that the program asks for are kept.
// What the fields mean: mime_parse.h.
#pragma once
#include <QByteArray>
#include <QByteArrayView>

namespace mime {

// Header fields unfolded: the line ends of folding are gone, what stood behind them is kept. A field that stands
// there more than once: the first one, but To, whose further ones follow behind a comma.
struct header_block {
    QByteArray to, subject, from, reply_to, message_id, references, in_reply_to;
    QByteArray content_type, transfer_encoding, disposition;
    QByteArray received, date;
    qsizetype body_at = 0; // where the text behind the header begins
    bool complete = false; // the empty line was met (else the bytes may be cut)
};

header_block read_header_block(QByteArrayView mail);

}
