#include "platform/real/mail/charset.h"
#include <QByteArray>
#include <QStringDecoder>
#include <array>
#include <cerrno>
#include <iconv.h>

namespace mime {

namespace {

constexpr qsizetype longest_charset_name = 40;
constexpr size_t iconv_chunk = 16 * 1024;

// 0x80 to 0x9F; the five that Windows leaves free stay the control characters that they are.
constexpr std::array<char16_t, 32> windows_1252_high{0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                     0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                                     0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                     0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

// Lower case, without what iconv would take for an instruction ("//TRANSLIT"); empty when it cannot be a name.
QByteArray plain_charset_name(QByteArrayView charset)
{
    const QByteArray name = charset.toByteArray().trimmed().toLower();
    if (name.size() > longest_charset_name)
        return {};
    for (const char letter : name) {
        const bool fits = (letter >= 'a' && letter <= 'z') || (letter >= '0' && letter <= '9') || letter == '-' ||
                          letter == '_' || letter == '.' || letter == ':' || letter == '+';
        if (!fits)
            return {};
    }
    return name;
}

enum class reading { guessed, utf_8, windows_1252, by_iconv };

reading reading_of(QByteArrayView charset, const QByteArray &name)
{
    if (charset.trimmed().isEmpty() || name == "us-ascii" || name == "ascii" || name == "default")
        return reading::guessed;
    if (name == "utf-8" || name == "utf8" || name == "unicode-1-1-utf-8")
        return reading::utf_8;
    if (name.isEmpty() || name == "iso-8859-1" || name == "iso8859-1" || name == "iso_8859-1" || name == "latin1" ||
        name == "windows-1252" || name == "cp1252")
        return reading::windows_1252;
    return reading::by_iconv;
}

struct converter {
    explicit converter(const QByteArray &charset) : handle(iconv_open("UTF-8", charset.constData())) {}
    ~converter()
    {
        if (known())
            iconv_close(handle);
    }
    converter(const converter &) = delete;
    converter &operator=(const converter &) = delete;
    bool known() const { return handle != reinterpret_cast<iconv_t>(-1); }
    iconv_t handle;
};

// What does not belong to the charset becomes U+FFFD, one for each byte that had to be left out.
QString by_converter(QByteArrayView bytes, const converter &way)
{
    QByteArray utf8;
    std::array<char, iconv_chunk> room;
    char *next = const_cast<char *>(bytes.data());
    size_t left = size_t(bytes.size());
    for (bool flushed = false; !flushed;) {
        char *to = room.data();
        size_t free = room.size();
        flushed = left == 0;
        const size_t done =
            flushed ? iconv(way.handle, nullptr, nullptr, &to, &free) : iconv(way.handle, &next, &left, &to, &free);
        const int failure = done == size_t(-1) ? errno : 0;
        utf8.append(room.data(), to - room.data());
        if ((failure == EILSEQ || failure == EINVAL) && left > 0) {
            utf8.append("\xEF\xBF\xBD");
            ++next;
            --left;
        }
    }
    return QString::fromUtf8(utf8);
}

QString without_zero_characters(QString text)
{
    if (text.contains(QChar(0)))
        text.remove(QChar(0));
    return text;
}

QString as_named(QByteArrayView bytes, QByteArrayView charset)
{
    const QByteArray name = plain_charset_name(charset);
    const reading how = reading_of(charset, name);
    if (how == reading::by_iconv) {
        const converter way(name);
        if (way.known())
            return by_converter(bytes, way);
    }
    if ((how == reading::utf_8 || how == reading::guessed) && is_valid_utf8(bytes))
        return QString::fromUtf8(bytes);
    return from_windows_1252(bytes);
}

}

bool is_valid_utf8(QByteArrayView bytes)
{
    return bytes.isValidUtf8();
}

QString from_windows_1252(QByteArrayView bytes)
{
    QString text(bytes.size(), Qt::Uninitialized);
    QChar *to = text.data();
    for (const char byte : bytes) {
        const auto code = uchar(byte);
        *to++ = code >= 0x80 && code < 0xA0 ? QChar(windows_1252_high[code - 0x80]) : QChar(code);
    }
    return text;
}

QString text_in_charset(QByteArrayView bytes, QByteArrayView charset)
{
    QString text = without_zero_characters(as_named(bytes, charset));
    if (text.startsWith(QChar(QChar::ByteOrderMark)))
        text.remove(0, 1);
    return text;
}

}
