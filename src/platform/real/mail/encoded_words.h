// Header text with encoded words ("=?utf-8?Q?...?=") to plain text.
#pragma once
#include <QByteArrayView>
#include <QString>

namespace mime {

// Blanks between two encoded words go, and neighbours in one charset are decoded together, because some programs
// break a letter between two words. What is no well-formed encoded word stays as it is; 8-bit text outside of them is
// UTF-8 where valid, else Windows-1252.
QString decode_header_text(QByteArrayView raw);

}
