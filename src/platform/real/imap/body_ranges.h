// The bodies of the wanted mails, asked for in ranges ahead of the walk and taken one after the other.
#pragma once
#include "platform/real/imap/mailbox.h"
#include <deque>

namespace imap {

struct arrived_mail {
    quint32 uid = 0;
    QByteArray bytes;
};

class body_ranges {
public:
    explicit body_ranges(mailbox &of) : box(of) {}
    ~body_ranges() { *is_current = false; }
    body_ranges(const body_ranges &) = delete;
    body_ranges &operator=(const body_ranges &) = delete;

    void begin(const std::vector<quint32> &uids);
    // The next mail, waiting for it; nothing behind the last one. Throws what the connection throws. A mail that is
    // gone is passed over; one that the server refuses to give is told of by take_refused.
    std::optional<arrived_mail> next();
    std::vector<quint32> take_refused() { return std::exchange(refused, {}); }
    void stop(); // what is still to come is not waited for

private:
    struct range {
        std::vector<quint32> uids; // those that have not come yet
        qint64 bytes = 0;
        bool is_huge = false; // one mail, of which only the beginning is wanted
    };
    range next_range();
    void ask_ahead();
    void ask(range wanted);
    bool take(range &of, const response &from, const answer &said);
    void end(range &of, const answer &said);

    mailbox &box;
    std::shared_ptr<bool> is_current = std::make_shared<bool>(true); // false: answers under way are nobody's
    std::vector<quint32> waiting;
    size_t at = 0; // in waiting
    std::vector<quint32> one_by_one;
    std::deque<arrived_mail> arrived;
    qint64 bytes_arrived = 0;
    int under_way = 0;
    quint64 connected = 0; // the mailbox's times_connected as the walk began
    std::vector<quint32> refused;
};

}
