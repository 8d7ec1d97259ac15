#include "platform/real/smtp/offers.h"

namespace smtp {

offers offers_in(const answer &said)
{
    offers can;
    if (!said.is_yes())
        return can;
    for (const QByteArray &line : said.lines.mid(1)) { // the first line is the server's name
        const QByteArrayList words = line.mid(4).simplified().toUpper().split(' ');
        const QByteArray &word = words.first();
        can.pipelining = can.pipelining || word == "PIPELINING";
        can.eight_bit = can.eight_bit || word == "8BITMIME";
        can.utf8 = can.utf8 || word == "SMTPUTF8";
        if (word != "SIZE")
            continue;
        bool is_number = false;
        const qint64 most = words.value(1).toLongLong(&is_number);
        can.size = true;
        can.most_bytes = is_number && most > 0 ? most : 0;
    }
    return can;
}

}
