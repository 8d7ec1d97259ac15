// The names of folders on the server: what stands before them, what stands between them, and which ones there are.
#pragma once
#include "platform/real/imap/connection.h"
#include <QByteArrayList>

namespace imap {

class folder_names {
public:
    // Asks for prefix and delimiter; the answers come with the next finish.
    void ask_for_shape(connection &server);
    // The folders directly below one, the Inbox's own first; names as on the wire. Waits. Remembered from then on.
    QByteArrayList below(connection &server, const QByteArray &folder);
    // Makes it below that one, and subscribes it, so that other programs show it; its name on the wire. One that is
    // there already is as good. Throws what the server says against it.
    QByteArray add(connection &server, const QByteArray &folder, const QByteArray &name);
    void create(connection &server, const QByteArray &folder);

    bool may_be_name(QByteArrayView name) const; // holds no delimiter and no control character
    QByteArray last_part(const QByteArray &folder) const;

private:
    QByteArrayList places_below(const QByteArray &folder) const;
    bool try_create(connection &server, const QByteArray &folder, run_time_error &refusal);

    QByteArray prefix, delimiter;
    QList<std::pair<QByteArray, QByteArrayList>> known; // a folder and those below it
};

constexpr const char *inbox_name = "INBOX";

}
