// Any bytes as what a sending server says, in pieces of any size: the answers, its offers, and the words for the user.
// The first byte chooses the pieces.
#include "platform/real/net/connect_failure.h"
#include "platform/real/smtp/offers.h"
#include "platform/real/smtp/wire_form.h"
#include <cstdlib>

namespace {

void require(bool good)
{
    if (!good)
        abort();
}

bool is_one_clean_line(const QString &text)
{
    return !text.contains(u'\n') && !text.contains(u'\r') && !text.contains(QChar(0)) && text.isValidUtf16();
}

void look_at(const smtp::answer &said)
{
    require(said.code == 0 || (said.code >= 200 && said.code < 600 && !said.lines.isEmpty()));
    require(is_one_clean_line(smtp::words_of(said)) && smtp::words_of(said).size() <= 300);
    const smtp::offers can = smtp::offers_in(said);
    require(can.most_bytes >= 0 && (can.size || can.most_bytes == 0));
    for (const net::protocol speaks : {net::protocol::imap, net::protocol::pop3, net::protocol::smtp})
        require(is_one_clean_line(net::server_words(speaks, said.lines)));
}

// The answers of all bytes, read in pieces: the codes, and how many lines each has.
QByteArray read_answers(QByteArrayView bytes, qsizetype piece)
{
    smtp::answer_reader reader;
    QByteArray read;
    for (qsizetype at = 0; at < bytes.size(); at += piece) {
        reader.add(bytes.sliced(at, qMin(piece, bytes.size() - at)));
        while (const std::optional<smtp::answer> said = reader.next()) {
            look_at(*said);
            read += QByteArray::number(said->code) + '/';
            if (said->code == 0)
                return read;
            read += QByteArray::number(said->lines.size()) + ' ';
        }
    }
    return read;
}

// What a server makes of the mail again.
void look_at_wire_form(QByteArrayView bytes)
{
    QByteArray wire;
    smtp::append_stuffed(bytes, wire);
    require(wire.isEmpty() == bytes.isEmpty() && (wire.isEmpty() || wire.endsWith("\r\n")));
    require(wire.count('\r') == wire.count("\r\n") && wire.count('\n') == wire.count("\r\n"));
    require(!wire.startsWith(".\r\n") && !wire.contains("\r\n.\r\n"));
}

}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    if (size == 0)
        return 0;
    const QByteArrayView bytes(data + 1, qsizetype(size - 1));
    require(read_answers(bytes, 1 + data[0]) == read_answers(bytes, bytes.size() + 1));
    look_at_wire_form(bytes);
    return 0;
}
