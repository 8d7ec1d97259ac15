// Any bytes as what an IMAP server says: cut into answers, and each answer read in every way the client has.
#include "platform/real/imap/fetched.h"
#include "platform/real/imap/modified_utf7.h"
#include "platform/real/mail/mime_parse.h"
#include "platform/run_time_error.h"
#include <cstdlib>
#include <cstring>

namespace {

void require(bool good)
{
    if (!good)
        abort();
}

struct the_end {};

bool lies_within(QByteArrayView part, QByteArrayView whole)
{
    return part.isEmpty() || (part.data() >= whole.data() && part.data() + part.size() <= whole.data() + whole.size());
}

void read_all_ways(const imap::response &from)
{
    const imap::answer said = imap::read_answer(from);
    require(lies_within(said.name, from.bytes) && lies_within(said.human, from.bytes));
    const imap::fetched_mail mail = imap::read_fetched(from, said);
    if (mail.head) {
        const mime::header_block head = mime::read_header_block(*mail.head);
        require(mime::to_line(head).isValidUtf16() && mime::subject_of(head).isValidUtf16());
    }
    const std::vector<imap::uid_range> uids = imap::searched_uids(from, said);
    for (size_t at = 0; at < uids.size(); ++at) {
        require(uids[at].first > 0 && uids[at].first <= uids[at].last);
        require(at == 0 || uids[at - 1].last < uids[at].first);
    }
    require(!imap::plain_words(said.human).contains(u'\n'));
    imap::words words(from, qMin(said.rest_at, from.bytes.size()));
    while (!words.at_end()) {
        if (const auto text = words.text())
            imap::from_modified_utf7(*text);
        else
            words.skip();
    }
}

}

// The first byte says in pieces of which size the rest comes.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    if (size == 0)
        return 0;
    const QByteArrayView bytes(data + 1, qsizetype(size - 1));
    const qsizetype piece = data[0] == 0 ? bytes.size() : data[0];
    qsizetype at = 0;
    imap::response_reader reader([&](char *buffer, qsizetype room) {
        const qsizetype count = qMin(qMin(piece, room), bytes.size() - at);
        if (count <= 0)
            throw the_end();
        memcpy(buffer, bytes.data() + at, size_t(count));
        at += count;
        return count;
    });
    try {
        while (true)
            read_all_ways(reader.next());
    } catch (const the_end &) {
    } catch (const run_time_error &) {
    }
    return 0;
}
