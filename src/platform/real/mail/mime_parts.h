// Finding the text parts of a mail, over the mail's own bytes.
#pragma once
#include "platform/real/mail/header_block.h"
#include <vector>

namespace mime {

struct text_part {
    QByteArrayView raw; // still in its transfer encoding; a view into the mail
    int encoding = 0;   // a GMimeContentEncoding
    QByteArray charset; // as the mail says it, "" without one
    bool is_html = false;
};

// The best one first; further ones only in case it turns out to hold nothing but blanks. At most a handful.
std::vector<text_part> text_parts(QByteArrayView mail, const header_block &head);

}
