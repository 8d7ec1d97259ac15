// Where the mails of an mbox file lie. The file is walked once, in pieces; only places are kept.
#pragma once
#include "platform/real/mail_session/mbox_file.h"
#include <vector>

namespace mbox {

struct mail_place {
    qint64 at = 0;     // its From line
    qint64 size = 0;   // up to the next one
    quint64 print = 0; // of its first bytes, see print_of
};

constexpr qint64 print_size = 512;
quint64 print_of(QByteArrayView first_bytes);

struct index {
    file_state state; // as of the walk
    std::vector<mail_place> mails;
    bool left_out_last = false; // a last mail that was not whole yet
};

// Under a lock that the caller holds. A last mail that its writer has not finished is left out: without an empty line
// at its end, in a file that was written to within the last ten seconds.
index index_of(const file &mails);

constexpr size_t most_mails = 500000; // what lies beyond is left out

}
