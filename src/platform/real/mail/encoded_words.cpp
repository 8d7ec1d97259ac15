#include "platform/real/mail/encoded_words.h"
#include "platform/real/mail/charset.h"
#include <QByteArray>
#include <optional>

namespace mime {

namespace {

struct encoded_word {
    QByteArray charset;
    QByteArray bytes;
    qsizetype end = 0; // behind the closing "?="
};

QByteArray decode_q(QByteArrayView text)
{
    const auto digit = [](char letter) {
        if (letter >= '0' && letter <= '9')
            return letter - '0';
        const char low = char(letter | 0x20);
        return low >= 'a' && low <= 'f' ? low - 'a' + 10 : -1;
    };
    QByteArray bytes;
    bytes.reserve(text.size());
    for (qsizetype at = 0; at < text.size(); ++at) {
        if (text[at] == '=' && at + 2 < text.size() && digit(text[at + 1]) >= 0 && digit(text[at + 2]) >= 0) {
            bytes.append(char(digit(text[at + 1]) * 16 + digit(text[at + 2])));
            at += 2;
        } else {
            bytes.append(text[at] == '_' ? ' ' : text[at]);
        }
    }
    return bytes;
}

// The charset may carry a language behind a star.
QByteArray charset_without_language(QByteArrayView charset)
{
    const qsizetype star = charset.indexOf('*');
    return (star < 0 ? charset : charset.first(star)).toByteArray();
}

std::optional<encoded_word> word_at(QByteArrayView raw, qsizetype at)
{
    if (!raw.sliced(at).startsWith("=?"))
        return std::nullopt;
    constexpr qsizetype longest_charset = 60;
    const qsizetype charset_end = raw.sliced(at, qMin(raw.size() - at, longest_charset)).indexOf('?', 2);
    if (charset_end <= 2 || at + charset_end + 2 >= raw.size() || raw[at + charset_end + 2] != '?')
        return std::nullopt;
    const char encoding = char(raw[at + charset_end + 1] | 0x20);
    const qsizetype text_at = at + charset_end + 3;
    const qsizetype text_end = raw.indexOf('?', text_at);
    if (text_end < 0 || text_end + 1 >= raw.size() || raw[text_end + 1] != '=' || (encoding != 'q' && encoding != 'b'))
        return std::nullopt;
    const QByteArrayView text = raw.sliced(text_at, text_end - text_at);
    encoded_word word;
    word.charset = charset_without_language(raw.sliced(at + 2, charset_end - 2)).toLower();
    word.bytes = encoding == 'q' ? decode_q(text) : QByteArray::fromBase64(text.toByteArray());
    word.end = text_end + 2;
    return word;
}

qsizetype behind_blanks(QByteArrayView raw, qsizetype at)
{
    while (at < raw.size() && (raw[at] == ' ' || raw[at] == '\t'))
        ++at;
    return at;
}

}

QString decode_header_text(QByteArrayView raw)
{
    QString text;
    qsizetype plain_from = 0;
    for (qsizetype at = raw.indexOf("=?"); at >= 0;) {
        std::optional<encoded_word> word = word_at(raw, at);
        if (!word) {
            at = raw.indexOf("=?", at + 1);
            continue;
        }
        text += text_in_charset(raw.sliced(plain_from, at - plain_from), {});
        QByteArray charset = word->charset, bytes;
        while (word) {
            if (word->charset != charset) {
                text += text_in_charset(bytes, charset);
                charset = word->charset;
                bytes.clear();
            }
            bytes += word->bytes;
            at = word->end;
            word = word_at(raw, behind_blanks(raw, at));
        }
        text += text_in_charset(bytes, charset);
        plain_from = at;
        at = raw.indexOf("=?", at);
    }
    return text + text_in_charset(raw.sliced(plain_from), {});
}

}
