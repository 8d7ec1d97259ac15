#include "platform/real/mail_check/talk.h"
#include "platform/real/net/connect_failure.h"
#include <array>

namespace mail {

namespace {

constexpr qsizetype longest_line = 64 * 1024;
constexpr qsizetype most_lines = 20000;

run_time_error too_much()
{
    return net::failure(net::trouble::not_understood,
                        QStringLiteral("The server does not answer like a mail server of this kind."));
}

// The length in "...{12}" at the end of a line; -1 without one.
qsizetype literal_at_end(const QByteArray &text)
{
    const qsizetype open = text.lastIndexOf('{');
    if (open < 0 || !text.endsWith('}'))
        return -1;
    bool is_number = false;
    const qlonglong count = text.sliced(open + 1, text.size() - open - 2).toLongLong(&is_number);
    return is_number && count >= 0 ? count : -1;
}

QByteArray quoted(QByteArray text)
{
    text.replace('\\', "\\\\").replace('"', "\\\"");
    return '"' + text + '"';
}

}

void talk::fill()
{
    std::array<char, 16 * 1024> room;
    const qsizetype count = line.receive(room.data(), room.size());
    come.append(room.data(), count);
}

QByteArray talk::next_line()
{
    qsizetype end = come.indexOf('\n');
    for (; end < 0; end = come.indexOf('\n')) {
        if (come.size() > longest_line)
            throw too_much();
        fill();
    }
    QByteArray text = come.first(end);
    come.remove(0, end + 1);
    if (text.endsWith('\r'))
        text.chop(1);
    return text;
}

QByteArray talk::next_bytes(qsizetype count)
{
    if (count > longest_line)
        throw too_much();
    while (come.size() < count)
        fill();
    const QByteArray bytes = come.first(count);
    come.remove(0, count);
    return bytes;
}

talk::imap_answer talk::ask_imap(const QByteArray &command)
{
    const QByteArray tag = "C" + QByteArray::number(++number);
    line.send(tag + ' ' + command + "\r\n");
    imap_answer answer;
    for (qsizetype lines = 0; lines < most_lines; ++lines) {
        QByteArray text = next_line();
        for (qsizetype count = literal_at_end(text); count >= 0 && text.size() < longest_line;
             count = literal_at_end(text)) {
            text = text.first(text.lastIndexOf('{')) + quoted(next_bytes(count));
            text += next_line();
        }
        if (text.startsWith("* ")) {
            answer.untagged.append(text.sliced(2));
        } else if (text.startsWith(tag + ' ')) {
            answer.ok = text.sliced(tag.size() + 1).toUpper().startsWith("OK");
            answer.words = answer.ok ? QString() : net::server_words(net::protocol::imap, {text});
            return answer;
        }
    }
    throw too_much();
}

talk::pop3_answer talk::ask_pop3(const QByteArray &command)
{
    line.send(command + "\r\n");
    const QByteArray text = next_line();
    if (!text.startsWith("+OK") && !text.startsWith("-ERR"))
        throw too_much();
    const bool ok = text.startsWith('+');
    return {ok, text.sliced(ok ? 3 : 4).trimmed()};
}

void talk::say_goodbye(const QByteArray &command)
{
    line.send(command + "\r\n");
}

}
