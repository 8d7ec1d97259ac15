#include "platform/real/mail/mime_body.h"
#include "platform/real/mail/charset.h"
#include "platform/real/mail/gmime_headers.h"
#include "platform/real/mail/html_to_text.h"
#include "platform/real/mail/mime_parse.h"
#include "platform/real/mail/mime_parts.h"

namespace mime {

namespace {

// Never in the middle of a letter, as long as the text is UTF-8.
QByteArrayView first_bytes(QByteArrayView bytes, qsizetype most)
{
    if (bytes.size() <= most)
        return bytes;
    qsizetype end = most;
    while (end > most - 4 && (uchar(bytes[end]) & 0xC0) == 0x80)
        --end;
    return bytes.first(end);
}

QByteArray decoded(const text_part &part)
{
    GMimeEncoding state;
    g_mime_encoding_init_decode(&state, GMimeContentEncoding(part.encoding));
    const QByteArrayView raw = part.raw.first(qMin(part.raw.size(), 4 * longest_body));
    constexpr size_t spare = 16; // what the steps may hold back and bring along
    QByteArray bytes(qsizetype(g_mime_encoding_outlen(&state, size_t(raw.size()) + spare)), Qt::Uninitialized);
    size_t length = g_mime_encoding_step(&state, raw.data(), size_t(raw.size()), bytes.data());
    if (part.encoding == GMIME_CONTENT_ENCODING_BASE64) // a last letter whose padding was lost on the way
        length += g_mime_encoding_step(&state, "==", 2, bytes.data() + length);
    length += g_mime_encoding_flush(&state, "", 0, bytes.data() + length);
    bytes.truncate(qsizetype(length));
    return bytes;
}

bool is_encoded(const text_part &part)
{
    return part.encoding == GMIME_CONTENT_ENCODING_BASE64 || part.encoding == GMIME_CONTENT_ENCODING_QUOTEDPRINTABLE ||
           part.encoding == GMIME_CONTENT_ENCODING_UUENCODE;
}

// A lone CR is a letter of the text like any other.
void make_line_ends_lf(QString &text)
{
    if (text.contains(u'\r'))
        text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
}

QString plain_text(const text_part &part)
{
    const QByteArray bytes = is_encoded(part) ? decoded(part) : QByteArray();
    const QByteArrayView view = first_bytes(is_encoded(part) ? QByteArrayView(bytes) : part.raw, longest_body);
    QString text = text_in_charset(view, part.charset);
    make_line_ends_lf(text);
    return part.is_html ? html_to_text(text) : text;
}

bool is_blank(QStringView text)
{
    for (const QChar letter : text)
        if (!letter.isSpace())
            return false;
    return true;
}

}

QString body_text(QByteArrayView mail, const header_block &head)
{
    QString first;
    bool any = false;
    for (const text_part &part : text_parts(mail, head)) {
        const QString text = plain_text(part);
        if (!is_blank(text))
            return without_outer_blanks(text);
        if (!any)
            first = text;
        any = true;
    }
    return without_outer_blanks(first);
}

}
