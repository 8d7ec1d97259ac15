// What a server can do beyond the bare protocol, by its answer to EHLO.
#pragma once
#include "platform/real/smtp/answer_reader.h"

namespace smtp {

struct offers {
    bool pipelining = false; // several commands in one write
    bool eight_bit = false;  // 8BITMIME
    bool utf8 = false;       // SMTPUTF8: letters beyond ASCII in addresses and header fields
    bool size = false;       // wants to know how big a mail is
    qint64 most_bytes = 0;   // of a mail; 0: no limit is told
};

offers offers_in(const answer &said);

}
