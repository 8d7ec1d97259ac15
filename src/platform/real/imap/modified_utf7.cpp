#include "platform/real/imap/modified_utf7.h"
#include <optional>

namespace imap {

namespace {

bool stands_for_itself(QChar letter)
{
    return letter >= u' ' && letter <= u'~';
}

QByteArray shifted(QStringView letters)
{
    QByteArray bytes;
    for (const QChar letter : letters) {
        bytes += char(letter.unicode() >> 8);
        bytes += char(letter.unicode() & 0xFF);
    }
    QByteArray text = bytes.toBase64(QByteArray::OmitTrailingEquals);
    text.replace('/', ',');
    return '&' + text + '-';
}

// Between "&" and "-"; nothing where it is no Base64 of whole letters, or could have stood for itself.
std::optional<QString> unshifted(QByteArrayView inside)
{
    if (inside.isEmpty())
        return QStringLiteral("&");
    QByteArray text = inside.toByteArray();
    text.replace(',', '/');
    const auto decoded = QByteArray::fromBase64Encoding(text, QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded || decoded.decoded.isEmpty() || decoded.decoded.size() % 2 != 0)
        return std::nullopt;
    QString letters;
    for (qsizetype at = 0; at < decoded.decoded.size(); at += 2)
        letters += QChar(ushort(uchar(decoded.decoded[at]) << 8 | uchar(decoded.decoded[at + 1])));
    return letters.isValidUtf16() ? std::optional(letters) : std::nullopt;
}

}

QByteArray to_modified_utf7(const QString &name)
{
    QByteArray text;
    for (qsizetype at = 0; at < name.size();) {
        if (stands_for_itself(name[at])) {
            text += name[at] == u'&' ? QByteArray("&-") : QByteArray(1, char(name[at].unicode()));
            ++at;
            continue;
        }
        qsizetype end = at;
        while (end < name.size() && !stands_for_itself(name[end]))
            ++end;
        text += shifted(QStringView(name).sliced(at, end - at));
        at = end;
    }
    return text;
}

QString from_modified_utf7(QByteArrayView name)
{
    QString text;
    for (qsizetype at = 0; at < name.size();) {
        if (name[at] != '&') {
            if (uchar(name[at]) >= 0x80)
                return QString::fromUtf8(name);
            text += QLatin1Char(name[at++]);
            continue;
        }
        const qsizetype end = name.indexOf('-', at);
        const auto letters = end < 0 ? std::nullopt : unshifted(name.sliced(at + 1, end - at - 1));
        if (!letters)
            return QString::fromUtf8(name);
        text += *letters;
        at = end + 1;
    }
    return text;
}

QByteArray quoted(QByteArrayView text)
{
    QByteArray written = "\"";
    for (const char letter : text) {
        if (letter == '"' || letter == '\\')
            written += '\\';
        written += letter;
    }
    return written + '"';
}

}
