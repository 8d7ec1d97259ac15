// A proxy between a client and a server on loopback: counts, delays, records and spoils what passes, in a thread of its
// own. One connection of it: wire_connection.h
#pragma once
#include <QByteArray>
#include <QList>
#include <QString>
#include <chrono>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

class wire_connection;

enum class wire { to_server, to_client };

struct wire_fault {
    enum kind_of {
        close,  // an orderly end, both ways
        reset,  // the end of a program that was killed
        stall,  // open, and nothing passes any more, both ways
        noise,  // the rest of this direction becomes random bytes, as many as there were
        insert, // adds text behind what stands in after, in the same packet; at_byte is not looked at
    };
    kind_of kind = close;
    wire direction = wire::to_client;
    qint64 at_byte = 0;  // as many bytes of the direction pass unharmed, counted for each connection
    int connection = -1; // every one; or 0 for the next that comes, 1 for the one behind it, ...
    quint32 seed = 1;    // of the noise
    QByteArray after = {}, text = {};
};

struct wire_counts {
    int connections = 0;
    int round_trips = 0;                 // the client spoke first, or again behind something that it had been told
    qint64 to_server = 0, to_client = 0; // bytes that passed
};

struct wire_options {
    std::chrono::microseconds round_trip{0}; // added, half of it each way; the line gets no narrower
    QList<wire_fault> faults = {};
    bool record = false;
};

// What all connections write to.
struct wire_ledger {
    std::mutex in_use;
    wire_counts counts;
    QByteArray sent_by_client, told_to_client;
};

class wire_proxy {
public:
    explicit wire_proxy(quint16 server_port, const wire_options &options = {},
                        const QString &server_host = QStringLiteral("127.0.0.1"));
    ~wire_proxy();
    wire_proxy(const wire_proxy &) = delete;
    wire_proxy &operator=(const wire_proxy &) = delete;

    quint16 port = 0;
    void set(const wire_options &options); // for connections from now on; the next one is number 0
    wire_counts counts() const;
    QByteArray recorded(wire direction) const; // what the client sent, and what it was told
    void forget();                             // counts from zero, and what was recorded
    void reset_connections();                  // all that are open, at once

private:
    void run();
    void accept_one();
    int poll_once();
    void wake();

    const quint16 server_port;
    const QString server_host;
    int listener = -1, waker = -1;
    std::mutex in_use; // for what follows
    wire_options options;
    int number = 0;
    bool stopping = false, resetting = false;
    std::unique_ptr<wire_ledger> ledger;
    std::vector<std::unique_ptr<wire_connection>> connections; // the thread's
    std::thread thread;
};
