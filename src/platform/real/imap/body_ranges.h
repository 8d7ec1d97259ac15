// The bodies of the wanted mails, asked for in ranges ahead of the walk and taken one after the other. New mails whose
// heads are not known come whole, as long as most of them are small and wanted: the server opens each only once.
#pragma once
#include "platform/real/imap/mailbox.h"
#include <deque>

namespace imap {

struct arrived_mail {
    quint32 uid = 0;
    QByteArray bytes;
    bool is_here = true; // false: a big one keeps its place, and is asked for when its turn comes
    bool was_asked = true;
};

class body_ranges {
public:
    using wanted_test = std::function<bool(const QString &to, const QString &subject)>;

    explicit body_ranges(mailbox &of) : box(of) {}
    ~body_ranges() { *is_current = false; }
    body_ranges(const body_ranges &) = delete;
    body_ranges &operator=(const body_ranges &) = delete;

    // First the wanted ones, then what is wanted among the new ones, whose heads are learnt on the way. Both ascending.
    void begin(const std::vector<quint32> &wanted, const std::vector<quint32> &new_mails, wanted_test test);
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
        bool is_new = false;  // mails whose heads are not known
        size_t big = 0, small = 0, wanted = 0;
    };
    range next_range();
    range next_new_range();
    bool may_ask() const;
    void ask_ahead();
    void ask(range wanted);
    bool take(range &of, const response &from, const answer &said);
    void keep(quint32 uid, QByteArrayView bytes);
    bool has_place(quint32 uid) const;
    void lose_place(quint32 uid);
    void take_new(range &of, const fetched_mail &mail);
    void end(range &of, const answer &said);
    void end_new(range &of, bool is_refused);
    bool is_wanted(quint32 uid) const;
    void ask_for_big_ones();
    void read_other_heads();
    void save();

    mailbox &box;
    std::shared_ptr<bool> is_current = std::make_shared<bool>(true); // false: answers under way are nobody's
    wanted_test test;
    std::vector<quint32> waiting;
    size_t at = 0; // in waiting
    std::vector<quint32> one_by_one;

    std::vector<quint32> fresh; // new ones that are not asked for yet
    size_t fresh_at = 0;
    std::vector<quint32> heads_first;       // new ones that are not to come whole
    bool knows_fresh = false;               // the first of them have come
    bool heads_come_first = false;          // the new ones are not worth it
    qint64 fresh_bytes = 0, fresh_came = 0; // of those that came whole

    std::deque<arrived_mail> arrived;
    size_t ready = 0; // of those, what the list on disk knows, and may be shown
    qint64 bytes_arrived = 0, bytes_under_way = 0;
    int under_way = 0;
    quint64 connected = 0; // the mailbox's times_connected as the walk began
    std::vector<quint32> refused;
};

}
