// The mails of one folder as they were seen last: what is known of each, in the server's order, and which ones the
// walk stops at. Kept on disk: mail_cache.h.
#pragma once
#include "platform/mail_client.h"
#include "platform/real/imap/uid_set.h"
#include <QByteArray>

namespace imap {

struct listed_mail {
    quint32 uid = 0;
    quint32 size = 0;       // bytes; 0: not known
    qint64 received = 0;    // wall clock of the first sight, as seconds
    QByteArray to, subject; // UTF-8, which takes half the room
    bool head_known = false;
    bool told = false; // that it cannot be read
    bool gone = false;
};

class mail_list {
public:
    qint64 count() const { return qint64(order.size()); }
    const listed_mail *find(quint32 uid) const; // nullptr for one that is gone
    listed_mail *find(quint32 uid);
    quint32 next_uid() const { return next; } // above all that were ever here
    void set_next_uid(quint32 uid) { next = qMax(qMax(next, uid), 1U); }

    void clear();
    void add(listed_mail mail); // or replaces it
    bool remove_number(quint64 number);
    void remove(const std::vector<uid_range> &uids);
    // Leaves what the server has, and adds what was not known.
    void keep_only(const std::vector<quint32> &ascending);
    std::vector<quint32> without_head(); // ascending
    quint32 first_without_head();        // 0: there is none
    quint32 last_with_head() const;      // likewise
    std::vector<quint32> take_removed(); // since the last call

    // The wanted ones, ascending. Only what was not asked under this key yet is tested.
    std::vector<quint32> wanted(const outlook::wanted_mails &wanted_ones);

private:
    std::vector<listed_mail>::iterator place_of(quint32 uid);
    void tidy();

    std::vector<listed_mail> mails; // ascending; those that are gone stay until tidy
    std::vector<quint32> order;     // the UIDs by the server's message numbers
    std::vector<quint32> headless, removed, untested, wanted_uids;
    QString key;
    quint32 next = 1;
    bool any_gone = false;
};

}
