// Bytes of a mail to text, whatever the mail says (or does not say) about its charset. Never fails.
#pragma once
#include <QByteArrayView>
#include <QString>

namespace mime {

// ISO-8859-1 is read as Windows-1252, and so are an unknown charset and UTF-8 that is none. No charset, or plain
// ASCII: UTF-8 where the bytes are valid UTF-8, else Windows-1252. The text holds no zero character and no byte
// order mark at its head.
QString text_in_charset(QByteArrayView bytes, QByteArrayView charset);

bool is_valid_utf8(QByteArrayView bytes);
QString from_windows_1252(QByteArrayView bytes);

}
