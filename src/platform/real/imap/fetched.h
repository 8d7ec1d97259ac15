// What the answers to FETCH and SEARCH tell, read in place.
#pragma once
#include "platform/real/imap/response_words.h"
#include "platform/real/imap/uid_set.h"

namespace imap {

struct fetched_mail {
    quint32 uid = 0;              // 0: not told, as in what the server says unasked
    std::optional<qint64> moment; // INTERNALDATE, seconds since 1970
    std::optional<quint64> size;
    std::optional<QByteArrayView> head;    // the asked fields of the header; NIL, of a mail that is gone, is nothing
    std::optional<QByteArrayView> body;    // the bytes of the mail, likewise
    std::deque<QByteArray> unescaped = {}; // what head and body may lie in
};

// answer must be of the same response, and its name FETCH.
fetched_mail read_fetched(const response &from, const answer &fetch);

// Of SEARCH 1 2 3, or ESEARCH (TAG "t1") UID ALL 1:3.
std::vector<uid_range> searched_uids(const response &from, const answer &search);

// "17-Jul-1996 02:44:25 -0700".
std::optional<qint64> moment_in(QByteArrayView internal_date);

}
