#include "platform/real/imap/response_reader.h"
#include "platform/network.h"
#include <cstring>
#include <optional>

namespace imap {

namespace {

constexpr qsizetype usual_size = 256 * 1024;
constexpr qsizetype one_reading = 64 * 1024;
constexpr qint64 biggest_number = Q_INT64_C(0x7FFFFFFFFFFFFFFF) / 10 - 1;

[[noreturn]] void throw_not_understood()
{
    throw net::failure(net::trouble::not_understood,
                       QStringLiteral("The mail server does not answer like an IMAP server."));
}

bool begins_with_word(QByteArrayView text, QByteArrayView word)
{
    return text.startsWith(word) && (text.size() == word.size() || text[word.size()] == ' ');
}

// The text behind OK and its like is free: it may end in what looks like the head of a literal.
bool may_hold_literals(QByteArrayView answer)
{
    if (!answer.startsWith("* "))
        return false;
    const QByteArrayView rest = answer.sliced(2);
    for (const char *word : {"OK", "NO", "BAD", "BYE", "PREAUTH"})
        if (begins_with_word(rest, word))
            return false;
    return true;
}

// The number in "...{123}", also "{123+}", at the end of a line.
std::optional<qint64> announced_literal(QByteArrayView line)
{
    if (!line.endsWith('}'))
        return std::nullopt;
    const qsizetype open = line.lastIndexOf('{');
    QByteArrayView digits = open < 0 ? QByteArrayView() : line.sliced(open + 1).chopped(1);
    if (digits.endsWith('+'))
        digits.chop(1);
    if (digits.isEmpty())
        return std::nullopt;
    qint64 number = 0;
    for (const char digit : digits) {
        if (digit < '0' || digit > '9')
            return std::nullopt;
        if (number > biggest_number)
            throw_not_understood();
        number = number * 10 + (digit - '0');
    }
    return number;
}

}

response_reader::response_reader(source bytes) : receive(std::move(bytes)), buffer(usual_size, Qt::Uninitialized) {}

// Room first by moving what is left to the front, then by a bigger buffer.
void response_reader::more(qsizetype at_least)
{
    if (buffer.size() - filled < at_least && begin > 0) {
        memmove(buffer.data(), buffer.data() + begin, size_t(filled - begin));
        filled -= begin;
        begin = 0;
    }
    if (buffer.size() - filled < at_least)
        buffer.resize(qMax(filled + at_least, buffer.size() * 2));
    const qsizetype come = receive(buffer.data() + filled, buffer.size() - filled);
    filled += qBound<qsizetype>(0, come, buffer.size() - filled);
}

// Puts the literal behind what is there of the answer, as far as it is kept, and drops the rest as it comes.
void response_reader::take_literal(qint64 announced)
{
    if (literals.size() == most_literals || announced > most_announced_bytes - announced_in_all)
        throw_not_understood();
    announced_in_all += announced;
    const qsizetype kept = qsizetype(qMin<qint64>(announced, most_literal_bytes - kept_of_literals));
    literals.push_back({end, kept});
    kept_of_literals += kept;
    while (filled - begin < end + kept) {
        literal_left = announced - (filled - begin - end);
        more(qMin(one_reading, end + kept - (filled - begin)));
    }
    end += kept;
    for (qint64 left = announced - kept; left > 0;) {
        literal_left = left;
        if (filled - begin == end)
            more(one_reading);
        const qsizetype dropped = qsizetype(qMin<qint64>(left, filled - begin - end));
        char *const at = buffer.data() + begin + end;
        memmove(at, at + dropped, size_t(filled - begin - end - dropped));
        filled -= dropped;
        left -= dropped;
    }
    literal_left = 0;
}

void response_reader::begin_anew()
{
    begin += used;
    used = end = kept_of_literals = 0;
    announced_in_all = literal_left = 0;
    literals.clear();
    if (begin < filled)
        return;
    begin = filled = 0;
    if (buffer.size() > 4 * usual_size)
        buffer = QByteArray(usual_size, Qt::Uninitialized);
}

response response_reader::next()
{
    begin_anew();
    qsizetype line = 0; // where the present line begins
    while (true) {
        const void *found = memchr(buffer.constData() + begin + end, '\n', size_t(filled - begin - end));
        if (!found) {
            end = filled - begin;
            if (end - kept_of_literals > longest_line)
                throw_not_understood();
            more(one_reading);
            continue;
        }
        const qsizetype line_end = static_cast<const char *>(found) - (buffer.constData() + begin);
        QByteArrayView whole(buffer.constData() + begin, line_end);
        end = used = line_end + 1;
        if (whole.size() > line && whole.endsWith('\r'))
            whole.chop(1);
        const auto announced =
            may_hold_literals(whole) ? announced_literal(whole.sliced(line)) : std::optional<qint64>();
        if (!announced)
            return {whole, &literals};
        take_literal(*announced);
        line = end;
    }
}

}
