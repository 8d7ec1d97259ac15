// Any bytes as what a POP3 server says, in pieces of any size. The first two bytes say how it is fed.
#include "platform/real/mail_session/pop3_listing.h"
#include "platform/real/mail_session/pop3_reader.h"
#include <cstdlib>

namespace {

void require(bool good)
{
    if (!good)
        abort();
}

constexpr qsizetype keep = 500;

void check(const pop3::answer &said)
{
    require(said.lines.size() <= keep);
    require(said.said == pop3::fate::yes || said.lines.isEmpty());
    require(said.words.size() <= 4096);
    require(pop3::words_for_user(said).size() <= 300);
    for (const pop3::listed_mail &mail : pop3::listing_in(said.lines, true))
        require(mail.number > 0 && mail.key.size() <= 201);
}

}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    if (size < 2)
        return 0;
    const qsizetype step = 1 + data[0];
    const QByteArrayView bytes(data + 2, qsizetype(size) - 2);
    pop3::answer_reader reader;
    int count = 0;
    for (qsizetype at = 0; at < bytes.size(); at += step) {
        reader.add(bytes.sliced(at, qMin(step, bytes.size() - at)));
        // The same form until the answer is whole.
        while (true) {
            const bool many = (data[1] >> (count % 8)) & 1;
            const auto said = reader.next(many ? pop3::form::many_lines : pop3::form::one_line, keep);
            if (!said)
                break;
            check(*said);
            if (said->said == pop3::fate::not_understood)
                return 0;
            ++count;
        }
    }
    return 0;
}
