#include "platform/real/net/stream_line.h"
#include <algorithm>
#include <array>
#include <poll.h>

namespace net {

namespace {

constexpr int slice_ms = 50; // how often a waiting is asked whether it shall end
constexpr qsizetype most_ahead = 16 * 1024 * 1024;

}

qsizetype stream::line::take(char *buffer, qsizetype size)
{
    if (!has_ahead())
        return take_now(buffer, size);
    const qsizetype count = qMin(size, ahead.size() - ahead_at);
    std::copy_n(ahead.cbegin() + ahead_at, count, buffer);
    ahead_at += count;
    if (!has_ahead()) {
        ahead.clear();
        ahead_at = 0;
    }
    return count;
}

qsizetype stream::line::take_now(char *buffer, qsizetype size)
{
    size_t come = 0;
    const CURLcode code = curl_easy_recv(handle, buffer, size_t(size), &come);
    if (code == CURLE_AGAIN)
        return 0;
    if (code != CURLE_OK || come == 0)
        throw failure(trouble::closed, name_of(where) + QStringLiteral(" closed the connection."));
    return qsizetype(come);
}

bool stream::line::read_ahead()
{
    if (ahead.size() >= most_ahead)
        return true;
    std::array<char, 16384> bytes;
    ahead.append(bytes.data(), take_now(bytes.data(), bytes.size()));
    return has_ahead();
}

// Waits one slice; since is the time without a byte.
void stream::line::wait(short what_for, QElapsedTimer &since)
{
    if (is_given_up())
        throw failure(trouble::cancelled, QStringLiteral("Cancelled."));
    const qint64 left = patience.answer_ms - since.elapsed();
    if (left <= 0)
        throw failure(trouble::timed_out, name_of(where) + QStringLiteral(" does not answer any more."));
    pollfd one{socket, what_for, 0};
    poll(&one, 1, int(qMin<qint64>(left, slice_ms)));
}

stream::stream(const place &where, const patience &patience) : self(std::make_unique<line>(where, patience))
{
    self->connect();
}

stream::~stream() = default;

void stream::send(QByteArrayView bytes)
{
    QElapsedTimer since;
    since.start();
    while (!bytes.isEmpty()) {
        size_t gone = 0;
        const CURLcode code = curl_easy_send(self->handle, bytes.data(), size_t(bytes.size()), &gone);
        if (code != CURLE_OK && code != CURLE_AGAIN)
            throw failure(trouble::closed, name_of(self->where) + QStringLiteral(" closed the connection."));
        bytes = bytes.sliced(qsizetype(gone));
        self->sent += qint64(gone);
        if (gone > 0) {
            since.restart();
            continue;
        }
        const qsizetype before = self->ahead.size();
        self->read_ahead(); // a server whose answers nobody takes stops reading
        if (self->ahead.size() == before)
            self->wait(before < most_ahead ? POLLIN | POLLOUT : POLLOUT, since);
    }
}

qint64 stream::sent() const
{
    return self->sent;
}

qsizetype stream::receive(char *buffer, qsizetype size)
{
    QElapsedTimer since;
    since.start();
    while (true) {
        const qsizetype come = self->take(buffer, size);
        if (come > 0)
            return come;
        self->wait(POLLIN, since);
    }
}

bool stream::has_waiting(int ms)
{
    if (self->has_ahead() || self->read_ahead())
        return true;
    pollfd one{self->socket, POLLIN, 0};
    return ms > 0 && poll(&one, 1, ms) > 0 && self->read_ahead();
}

const QByteArrayList &stream::server_lines() const
{
    return self->lines;
}

void stream::set_patience(const patience &patience)
{
    self->patience = patience;
    self->given_up = false;
}

}
