// A mail and its addresses as they stand on the line.
#pragma once
#include <QByteArray>
#include <QString>

namespace smtp {

// Every line ends in CR LF, also the last, and a dot at its head is doubled. A lone CR or LF ends a line as well: a
// server that takes one for a line end could otherwise be told that the mail ends within it.
void append_stuffed(QByteArrayView mail, QByteArray &to);

struct letters {
    bool eight_bit_header = false, eight_bit_body = false;
};
letters letters_of(QByteArrayView mail);

struct envelope_address {
    QByteArray bytes;
    bool needs_utf8 = false; // SMTPUTF8
};
// Of an address that can be written to (mail::why_not_writable). A domain beyond ASCII has a form within.
envelope_address envelope_form(const QString &address);

}
