#include "support/wire_connection.h"

#include "support/loopback.h"
#include <algorithm>
#include <cerrno>
#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr qint64 most_held = 4 << 20; // then the sender has to wait, as on any line

QByteArray noise_of(std::mt19937 &generator, qsizetype size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<char>(generator()); });
    return bytes;
}

bool is_later(ssize_t result)
{
    return result < 0 && (errno == EAGAIN || errno == EINTR);
}

}

wire_connection::wire_connection(int client_socket, int server_socket, const wire_options &options, int number,
                                 wire_ledger &of_all)
    : client(client_socket),
      server(server_socket),
      up{wire::to_server, client_socket, server_socket},
      down{wire::to_client, server_socket, client_socket},
      one_way(options.round_trip / 2),
      record(options.record),
      ledger(of_all)
{
    for (const wire_fault &fault : options.faults)
        if (fault.connection < 0 || fault.connection == number)
            faults += fault;
    for (pump *each : {&up, &down})
        flush(*each); // faults before the first byte
}

wire_connection::~wire_connection()
{
    end();
}

void wire_connection::end()
{
    if (finished())
        return;
    ::close(client);
    ::close(server);
    client = server = -1;
}

void wire_connection::reset()
{
    if (finished())
        return;
    close_with_reset(client);
    close_with_reset(server);
    client = server = -1;
}

bool wire_connection::reads(const pump &of) const
{
    return now == state::passing && !of.ended && of.held < most_held;
}

void wire_connection::wishes(pollfd &of_client, pollfd &of_server) const
{
    const auto wish = [this](int socket, bool ended, const pump &in, const pump &out) {
        int events = now == state::stalled && socket == client ? POLLRDHUP : 0; // the client ends it
        if ((now == state::closing && !ended) || reads(in))
            events |= POLLIN;
        if (now == state::passing && out.blocked)
            events |= POLLOUT;
        return pollfd{events ? socket : -1, static_cast<short>(events), 0};
    };
    of_client = wish(client, client_ended, up, down);
    of_server = wish(server, server_ended, down, up);
}

std::optional<wire_connection::clock::time_point> wire_connection::next_due() const
{
    std::optional<clock::time_point> first;
    for (const pump *each : {&up, &down})
        if (now == state::passing && !each->blocked && !each->waiting.empty())
            first = first ? std::min(*first, each->waiting.front().due) : each->waiting.front().due;
    return first;
}

void wire_connection::serve(const pollfd &of_client, const pollfd &of_server)
{
    if (now == state::closing)
        return drain(of_client, of_server);
    if (now == state::stalled) {
        if (of_client.revents)
            end();
        return;
    }
    if (of_client.revents & ~POLLOUT)
        read(up);
    if (!finished() && (of_server.revents & ~POLLOUT))
        read(down);
    constexpr short writable = POLLOUT | POLLERR | POLLHUP;
    up.blocked = up.blocked && !(of_server.revents & writable);
    down.blocked = down.blocked && !(of_client.revents & writable);
    for (pump *each : {&up, &down})
        if (!finished() && now == state::passing)
            flush(*each);
    if (up.told && down.told)
        end();
}

void wire_connection::read(pump &of)
{
    if (!reads(of))
        return;
    QByteArray bytes(65536, Qt::Uninitialized);
    const ssize_t got = ::recv(of.from, bytes.data(), size_t(bytes.size()), 0);
    if (is_later(got))
        return;
    if (got < 0)
        return reset(); // passed on as what it is
    of.ended = got == 0;
    if (of.ended)
        return;
    bytes.truncate(got);
    note_read(of, bytes);
    insert_texts(of.direction, bytes);
    if (of.noise)
        bytes = noise_of(*of.noise, bytes.size());
    of.held += bytes.size();
    of.waiting.push_back({clock::now() + one_way, bytes});
}

// Round trips as the client sees them: from its saying something to its being told something.
void wire_connection::note_read(const pump &of, const QByteArray &bytes)
{
    if (of.direction != wire::to_server)
        return;
    const std::lock_guard lock(ledger.in_use);
    if (std::exchange(client_was_told, false))
        ++ledger.counts.round_trips;
    if (record)
        ledger.sent_by_client += bytes;
}

void wire_connection::insert_texts(wire direction, QByteArray &bytes) const
{
    for (const wire_fault &fault : faults) {
        const qsizetype at = fault.kind == wire_fault::insert && fault.direction == direction && !fault.after.isEmpty()
                                 ? bytes.indexOf(fault.after)
                                 : -1;
        if (at >= 0)
            bytes.insert(at + fault.after.size(), fault.text);
    }
}

const wire_fault *wire_connection::next_fault(const pump &of) const
{
    const wire_fault *next = nullptr;
    for (const wire_fault &fault : faults)
        if (fault.kind != wire_fault::insert && fault.direction == of.direction &&
            !(of.noise && fault.kind == wire_fault::noise) && (!next || fault.at_byte < next->at_byte))
            next = &fault;
    return next;
}

void wire_connection::flush(pump &of)
{
    for (;;) {
        const wire_fault *fault = next_fault(of);
        if (fault && of.passed >= fault->at_byte) {
            strike(*fault, of);
            if (finished() || now != state::passing)
                return;
            continue;
        }
        if (of.waiting.empty() || of.blocked || of.waiting.front().due > clock::now())
            break;
        QByteArray &bytes = of.waiting.front().bytes;
        const qint64 until = fault ? fault->at_byte - of.passed : bytes.size();
        const qint64 sent = send(of, bytes.left(std::min<qint64>(bytes.size(), until)));
        if (sent < 0)
            return;
        bytes.remove(0, sent);
        if (bytes.isEmpty())
            of.waiting.pop_front();
    }
    if (of.ended && of.waiting.empty() && !std::exchange(of.told, true))
        ::shutdown(of.to, SHUT_WR);
}

// Sent and counted in one: who was told something finds it counted. -1: the connection is gone.
qint64 wire_connection::send(pump &of, const QByteArray &bytes)
{
    const std::lock_guard lock(ledger.in_use);
    const ssize_t sent = ::send(of.to, bytes.constData(), size_t(bytes.size()), MSG_NOSIGNAL);
    if (sent < 0 && !is_later(sent)) {
        reset();
        return -1;
    }
    of.blocked = sent < bytes.size();
    const qint64 passed = std::max<ssize_t>(sent, 0);
    of.passed += passed;
    of.held -= passed;
    if (of.direction == wire::to_server) {
        ledger.counts.to_server += passed;
        return passed;
    }
    ledger.counts.to_client += passed;
    client_was_told = client_was_told || passed > 0;
    if (record)
        ledger.told_to_client += bytes.left(passed);
    return passed;
}

void wire_connection::strike(const wire_fault &fault, pump &of)
{
    switch (fault.kind) {
    case wire_fault::close:
        return close_softly();
    case wire_fault::reset:
        return reset();
    case wire_fault::stall:
        now = state::stalled;
        return;
    case wire_fault::noise:
        of.noise.emplace(fault.seed);
        for (chunk &each : of.waiting)
            each.bytes = noise_of(*of.noise, each.bytes.size());
        return;
    case wire_fault::insert:
        return;
    }
}

// Closing a socket with something unread in it would be a reset.
void wire_connection::close_softly()
{
    now = state::closing;
    ::shutdown(client, SHUT_WR);
    ::shutdown(server, SHUT_WR);
}

void wire_connection::drain(const pollfd &of_client, const pollfd &of_server)
{
    const auto read_away = [](int socket, short events, bool &ended) {
        char bytes[65536];
        if (events && !ended) {
            const ssize_t got = ::recv(socket, bytes, sizeof bytes, 0);
            ended = got <= 0 && !is_later(got);
        }
    };
    read_away(client, of_client.revents, client_ended);
    read_away(server, of_server.revents, server_ended);
    if (client_ended && server_ended)
        end();
}
