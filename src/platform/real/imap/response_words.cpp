#include "platform/real/imap/response_words.h"

namespace imap {

namespace {

constexpr qsizetype longest_words = 300;
constexpr qsizetype longest_section = 2000;    // "[...]" in the name of an item
constexpr qsizetype longest_literal_head = 32; // "{...}"

bool ends_atom(char letter)
{
    return uchar(letter) <= ' ' || letter == '(' || letter == ')' || letter == '"';
}

status status_named(QByteArrayView word)
{
    if (is(word, "OK"))
        return status::ok;
    if (is(word, "NO"))
        return status::no;
    if (is(word, "BAD"))
        return status::bad;
    if (is(word, "BYE"))
        return status::bye;
    return is(word, "PREAUTH") ? status::preauth : status::none;
}

void read_status_text(QByteArrayView text, answer &into)
{
    while (text.startsWith(' '))
        text = text.sliced(1);
    const qsizetype end = text.startsWith('[') ? text.indexOf(']') : -1;
    into.human = text.sliced(end + 1);
    if (end < 0)
        return;
    const QByteArrayView inside = text.first(end).sliced(1);
    const qsizetype blank = inside.indexOf(' ');
    into.code = blank < 0 ? inside : inside.first(blank);
    into.details = blank < 0 ? QByteArrayView() : inside.sliced(blank + 1);
}

}

bool is(QByteArrayView word, QByteArrayView capitals)
{
    return word.size() == capitals.size() && qstrnicmp(word.data(), word.size(), capitals.data(), capitals.size()) == 0;
}

void words::pass_blanks()
{
    while (at < bytes.size() && bytes[at] == ' ')
        ++at;
}

bool words::at_end()
{
    pass_blanks();
    return at >= bytes.size();
}

bool words::opens()
{
    pass_blanks();
    const bool met = at < bytes.size() && bytes[at] == '(';
    at += met;
    return met;
}

bool words::closes()
{
    pass_blanks();
    const bool met = at < bytes.size() && bytes[at] == ')';
    at += met;
    return met;
}

QByteArrayView words::atom()
{
    pass_blanks();
    const qsizetype from = at;
    while (at < bytes.size() && !ends_atom(bytes[at])) {
        const qsizetype close =
            bytes[at] == '[' ? bytes.sliced(at).first(qMin(longest_section, bytes.size() - at)).indexOf(']') : -1;
        at += close < 0 ? 1 : close + 1;
    }
    return bytes.sliced(from, at - from);
}

std::optional<quint64> words::number()
{
    bool good = false;
    const quint64 value = atom().toULongLong(&good);
    return good ? std::optional(value) : std::nullopt;
}

QByteArrayView words::quoted()
{
    const qsizetype from = ++at;
    bool escapes = false;
    while (at < bytes.size() && bytes[at] != '"') {
        escapes = escapes || bytes[at] == '\\';
        at += bytes[at] == '\\' ? 2 : 1;
    }
    at = qMin(at, bytes.size());
    const QByteArrayView raw = bytes.sliced(from, at - from);
    at += at < bytes.size();
    if (!escapes)
        return raw;
    QByteArray plain;
    plain.reserve(raw.size());
    for (qsizetype i = 0; i < raw.size(); ++i) {
        i += raw[i] == '\\' && i + 1 < raw.size();
        plain += raw[i];
    }
    unescaped.push_back(std::move(plain));
    return unescaped.back();
}

// Where the reader has not met one, the brace is a letter like others.
std::optional<QByteArrayView> words::literal()
{
    if (!literals)
        return std::nullopt;
    const qsizetype head = bytes.sliced(at).first(qMin(longest_literal_head, bytes.size() - at)).indexOf('\n');
    const qsizetype line_end = head < 0 ? -1 : at + head;
    while (next_literal < literals->size() && (*literals)[next_literal].at <= at)
        ++next_literal;
    if (line_end < 0 || next_literal == literals->size() || (*literals)[next_literal].at != line_end + 1)
        return std::nullopt;
    const literal_place place = (*literals)[next_literal++];
    at = place.at + place.size;
    return bytes.sliced(place.at, place.size);
}

std::optional<QByteArrayView> words::text()
{
    pass_blanks();
    if (at >= bytes.size())
        return std::nullopt;
    if (bytes[at] == '"')
        return quoted();
    if (bytes[at] == '{')
        if (const auto found = literal())
            return found;
    const QByteArrayView word = atom();
    return word.isEmpty() || is(word, "NIL") ? std::nullopt : std::optional(word);
}

void words::skip()
{
    qint64 depth = 0;
    do {
        if (opens())
            ++depth;
        else if (closes())
            --depth;
        else if (const qsizetype before = at; !text() && at == before)
            ++at; // a control character, say: no word begins here
    } while (depth > 0 && !at_end());
}

answer read_answer(const response &from)
{
    answer read;
    if (from.bytes.startsWith('+')) {
        read.kind = answer_kind::continuation;
        return read;
    }
    words line(from, 0);
    const QByteArrayView first = line.atom();
    QByteArrayView word = line.atom();
    read.said = status_named(word);
    if (first != QByteArrayView("*")) {
        read.kind = answer_kind::tagged;
        read.tag = first;
        read_status_text(line.rest(), read);
        return read;
    }
    if (read.said != status::none) {
        read.kind = answer_kind::status;
        read_status_text(line.rest(), read);
        return read;
    }
    bool counted = false;
    read.number = word.toULongLong(&counted);
    if (counted)
        word = line.atom();
    read.kind = counted ? answer_kind::numbered : answer_kind::named;
    read.name = word;
    read.rest_at = from.bytes.size() - line.rest().size();
    return read;
}

QString plain_words(QByteArrayView human)
{
    QString text = QString::fromUtf8(human.first(qMin(human.size(), 4 * longest_words)));
    for (QChar &letter : text)
        if (letter.category() == QChar::Other_Control)
            letter = u' ';
    return text.trimmed().left(longest_words);
}

}
