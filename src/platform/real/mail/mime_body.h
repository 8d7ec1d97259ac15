// The text of a mail: which part it is, and how it becomes text. The header: mime_parse.h.
#pragma once
#include "platform/real/mail/header_block.h"
#include <QString>

namespace mime {

// The first readable text part that is no attachment, of alternatives the plain one before the HTML one, HTML turned
// into text. LF line ends, without outer blanks (line ends stay, as they are in the mail). A multipart whose boundary
// never occurs gives the raw text behind its header; a mail without text gives "".
// head must be of the same bytes.
QString body_text(QByteArrayView mail, const header_block &head);

constexpr qsizetype longest_body = 8 * 1024 * 1024; // bytes of the decoded part; what lies beyond is left out

}
