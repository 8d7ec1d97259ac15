// A logged-in IMAP connection: commands go out, several at a time, and each answer goes to whom it concerns.
// What the answers mean for the mails of a folder: mailbox.h.
#pragma once
#include "platform/real/imap/response_words.h"
#include "platform/real/net/stream.h"
#include "platform/run_time_error.h"
#include <QElapsedTimer>
#include <deque>
#include <functional>

namespace imap {

class connection {
public:
    using hears = std::function<bool(const response &, const answer &)>; // true: it was for me, and new
    using ends = std::function<void(const answer &)>;                    // the command's own last answer

    // Connected and logged in when it is there; throws what a stream throws. Everything that has no tag is told to
    // surprises first, and then to the commands under way.
    connection(const net::place &where, hears surprises);

    bool can(QByteArrayView capability) const; // "MOVE"
    bool knows_capabilities() const { return !capabilities.isEmpty(); }
    void forget_capabilities() { capabilities.clear(); }

    // Without tag and line end. Goes out when something is listened for, or by flush, so that commands travel together.
    void ask(const QByteArray &command, hears meanwhile, ends done);
    void flush();
    // For one answer of the server; waits as long as present_patience says, also when the server talks all the time
    // and says nothing that a command waits for.
    void listen();
    void finish(); // until every command has its last answer
    bool is_busy() const { return !under_way.empty(); }
    bool is_good() const { return good; } // false behind a failure: hang up

    // Of a command that was refused, with the server's words.
    run_time_error refusal(const answer &said) const;

private:
    struct command {
        QByteArray tag;
        hears meanwhile;
        ends done;
    };
    void hear(const response &from);
    void note_status(const answer &said);
    void take_capabilities(QByteArrayView list);
    qsizetype receive(char *buffer, qsizetype size);
    void end_useless_talk() const;
    void note_use();

    net::place where;
    net::stream stream;
    response_reader reader;
    hears surprises;
    std::deque<command> under_way;
    QByteArray outgoing, capabilities; // the latter " IMAP4REV1 MOVE "
    QString farewell;                  // what the server said as it hung up
    quint32 last_tag = 0;
    bool good = true;

    QElapsedTimer listening;
    qint64 useless_ns = 0;      // listened for since something of use came
    qint64 literal_bytes = 0;   // of the present answer, not counted as of use yet
    qint64 literals_of_use = 0; // since something of use came
};

}
