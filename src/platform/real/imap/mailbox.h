// One folder on the server, as it is now: a connection of its own that has it open, kept between fetches and opened
// again when it turns out dead, and the list of its mails. Walking it: imap_walk.h. Moving: move_queue.h.
#pragma once
#include "platform/real/imap/fetched.h"
#include "platform/real/imap/folder_names.h"
#include "platform/real/imap/mail_cache.h"
#include <memory>

namespace imap {

using place_source = std::function<net::place()>; // with password or token, which may have changed since the last time

class mailbox {
public:
    // account names server and user in the cache; folder is a name on the wire.
    mailbox(place_source place, QByteArray account, QByteArray folder, std::shared_ptr<mail_cache> cache);

    // Both throw what connecting throws. A connection that turns out dead is opened again, once.
    void open();    // a connection that was there is not tried
    void refresh(); // and the list is what the server has now

    connection &server() { return *line; } // behind open, as long as is_open
    bool is_open() const { return line && line->is_good() && !said_bye; }
    void hang_up();

    mail_list list;
    folder_names names;
    // New mails, when they are many: their heads are not read yet, but may come with the bodies.
    std::vector<quint32> unread_heads();
    void fetch_heads(const QByteArray &uids); // waits
    // What came is new in the list, with to and subject of this header; nothing that save has not seen may be shown.
    const listed_mail *learn(const fetched_mail &mail, QByteArrayView header, qint64 size);
    quint32 uid_validity() const { return state.uid_validity; }
    quint64 times_connected() const { return connections; }
    // The list may not be what the server has: the next refresh compares the two, mail by mail.
    void doubt() { doubted = true; }
    void save(); // into the cache

    std::vector<quint32> copied; // lie in their target already and have only to go from here
    bool was_copied(quint32 uid) const;

private:
    void connect();
    void select();
    void take_code(const answer &said);
    bool take_unasked(const response &from, const answer &said);
    void take_vanished(const response &from, const answer &said);
    void bring_up_to_date();
    void fetch_missing_heads();
    bool take_head(const response &from, const answer &said);
    void compare_all();
    bool list_is_complete() const { return quint64(list.count()) == exists; }

    place_source where;
    QByteArray account, folder;
    std::shared_ptr<mail_cache> cache;
    std::unique_ptr<connection> line;
    folder_state state, saved;
    quint32 present_validity = 0; // as the server says it
    quint32 present_next = 0;     // its UIDNEXT, 0: not told
    quint64 exists = 0;
    bool said_bye = false, cache_was_read = false;
    bool doubted = false;
    quint64 connections = 0;
    bool numbers_agree = false;     // the server's message numbers are those of the list
    std::vector<quint32> new_heads; // not in the cache yet
};

}
