#include "platform/real/mail/mail_encode.h"
#include <algorithm>

namespace mail {

namespace {

constexpr qsizetype longest_line = 76;
constexpr qsizetype longest_plain_line = 900; // the protocols' limit is 998
constexpr qsizetype bytes_of_a_word = 39;     // 52 letters of base64, 64 with what stands around them
constexpr qsizetype longest_name_beside_a_word = 10;

bool is_plain_ascii(QByteArrayView text)
{
    return std::all_of(text.begin(), text.end(), [](char letter) { return letter >= ' ' && letter < 0x7F; });
}

// Folded at blanks only; what has none stays long, which no line of ours reaches but by an id.
QByteArray folded(const QByteArray &name, const QByteArray &value)
{
    QByteArray lines = name + ':';
    qsizetype width = lines.size();
    qsizetype at = 0;
    while (at < value.size()) {
        qsizetype end = at;
        while (end < value.size() && value[end] == ' ')
            ++end;
        while (end < value.size() && value[end] != ' ')
            ++end;
        const QByteArray word = (at == 0 ? " " : "") + value.sliced(at, end - at);
        const bool only_blanks = word.trimmed().isEmpty();
        if (at > 0 && width + word.size() > longest_line && !only_blanks) {
            lines += "\r\n";
            width = 0;
        }
        lines += word;
        width += word.size();
        at = end;
    }
    return lines + "\r\n";
}

QByteArray as_encoded_words(const QByteArray &name, const QByteArray &utf8)
{
    QByteArray lines = name + ':';
    for (qsizetype at = 0; at < utf8.size();) {
        qsizetype end = qMin(at + bytes_of_a_word, utf8.size());
        while (end < utf8.size() && end > at + 1 && (uchar(utf8[end]) & 0xC0) == 0x80)
            --end; // no letter is broken between two words
        const bool beside_name = at == 0 && name.size() <= longest_name_beside_a_word;
        lines += (beside_name ? " " : "\r\n ") + ("=?utf-8?B?" + utf8.sliced(at, end - at).toBase64() + "?=");
        at = end;
    }
    return lines + "\r\n";
}

bool can_stand_plain(const QByteArray &value)
{
    if (!is_plain_ascii(value) || value.contains("=?") || value.startsWith(' ') || value.endsWith(' '))
        return false;
    if (value.contains(QByteArray(longest_line, ' ')))
        return false; // nothing is folded within blanks
    qsizetype longest = 0, from = 0;
    for (qsizetype at = 0; at <= value.size(); ++at) {
        if (at == value.size() || value[at] == ' ') {
            longest = qMax(longest, at - from);
            from = at + 1;
        }
    }
    return longest < longest_plain_line;
}

QByteArray with_crlf(const QString &text)
{
    QString lines = text;
    lines.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    lines.replace(u'\r', u'\n');
    return lines.replace(QStringLiteral("\n"), QStringLiteral("\r\n")).toUtf8();
}

bool fits_7bit(const QByteArray &bytes)
{
    qsizetype from = 0;
    while (from < bytes.size()) {
        const qsizetype found = bytes.indexOf("\r\n", from);
        const qsizetype end = found < 0 ? bytes.size() : found;
        const QByteArrayView line = QByteArrayView(bytes).sliced(from, end - from);
        if (line.size() > longest_line || line.startsWith("From ") || line.endsWith(' ') || !is_plain_ascii(line))
            return false;
        from = found < 0 ? bytes.size() : found + 2;
    }
    return bytes.isEmpty() || bytes.endsWith("\r\n"); // on its way a last line end would be added
}

bool stands_as_it_is(const QByteArray &bytes, qsizetype at)
{
    const char letter = bytes[at];
    if (letter == ' ' || letter == '\t')
        return at + 1 < bytes.size() && bytes[at + 1] != '\r';
    return letter > ' ' && letter < 0x7F && letter != '=';
}

QByteArray quoted_printable(const QByteArray &bytes)
{
    QByteArray text;
    qsizetype width = 0;
    for (qsizetype at = 0; at < bytes.size(); ++at) {
        if (bytes[at] == '\r' && at + 1 < bytes.size() && bytes[at + 1] == '\n') {
            text += "\r\n";
            width = 0;
            ++at;
            continue;
        }
        const bool as_it_is = stands_as_it_is(bytes, at);
        if (width + (as_it_is ? 1 : 3) >= longest_line) {
            text += "=\r\n";
            width = 0;
        }
        // Mailboxes and senders take "From " and a dot at the head of a line for something else.
        const bool plain = as_it_is && !(width == 0 && (bytes[at] == 'F' || bytes[at] == '.'));
        const QByteArray piece = plain ? QByteArray(1, bytes[at]) : '=' + bytes.sliced(at, 1).toHex().toUpper();
        text += piece;
        width += piece.size();
    }
    return width > 0 ? text + "=\r\n" : text; // the soft break: the text itself has no last line end
}

QByteArray base64_lines(const QByteArray &bytes)
{
    const QByteArray all = bytes.toBase64();
    QByteArray lines;
    for (qsizetype at = 0; at < all.size(); at += longest_line)
        lines += all.sliced(at, qMin(longest_line, all.size() - at)) + "\r\n";
    return lines;
}

}

QByteArray encode_header(const QByteArray &name, const QString &value)
{
    const QByteArray utf8 = value.toUtf8();
    return can_stand_plain(utf8) ? folded(name, utf8) : as_encoded_words(name, utf8);
}

encoded_text encode_text(const QString &text)
{
    const QByteArray bytes = with_crlf(text);
    if (fits_7bit(bytes))
        return {"7bit", bytes};
    const auto high = std::count_if(bytes.begin(), bytes.end(), [](char letter) { return uchar(letter) >= 0x7F; });
    if (high * 4 <= bytes.size())
        return {"quoted-printable", quoted_printable(bytes)};
    return {"base64", base64_lines(bytes)};
}

}
