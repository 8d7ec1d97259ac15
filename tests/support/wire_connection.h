// One connection through wire_proxy: two pumps, one for each direction.
#pragma once
#include "support/wire_proxy.h"
#include <deque>
#include <optional>
#include <poll.h>
#include <random>

class wire_connection {
public:
    using clock = std::chrono::steady_clock;

    // Takes both sockets.
    wire_connection(int client, int server, const wire_options &options, int number, wire_ledger &ledger);
    ~wire_connection();
    wire_connection(const wire_connection &) = delete;
    wire_connection &operator=(const wire_connection &) = delete;

    void wishes(pollfd &client, pollfd &server) const;
    void serve(const pollfd &client, const pollfd &server);
    std::optional<clock::time_point> next_due() const; // of bytes that wait for their delay
    void reset();
    bool finished() const { return client < 0; }

private:
    struct chunk {
        clock::time_point due;
        QByteArray bytes;
    };
    struct pump {
        wire direction;
        int from, to;
        std::deque<chunk> waiting = {};
        qint64 held = 0, passed = 0;
        bool ended = false, told = false, blocked = false;
        std::optional<std::mt19937> noise = {};
    };
    enum class state { passing, stalled, closing };

    bool reads(const pump &of) const;
    void read(pump &of);
    void note_read(const pump &of, const QByteArray &bytes);
    void flush(pump &of);
    qint64 send(pump &of, const QByteArray &bytes);
    void insert_texts(wire direction, QByteArray &bytes) const;
    const wire_fault *next_fault(const pump &of) const;
    void strike(const wire_fault &fault, pump &of);
    void close_softly();
    void drain(const pollfd &client, const pollfd &server);
    void end();

    int client, server;
    pump up, down;
    QList<wire_fault> faults;
    const std::chrono::microseconds one_way;
    const bool record;
    wire_ledger &ledger;
    state now = state::passing;
    bool client_was_told = true; // as if: what a client says first begins a round trip
    bool client_ended = false, server_ended = false;
};
