#include "support/scripted_server.h"

#include "support/loopback.h"
#include <algorithm>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

scripted_server::scripted_server(const QList<script> &in_turn) : scripts(in_turn)
{
    listener = listen_loopback(port);
    waker = ::eventfd(0, EFD_CLOEXEC);
    thread = std::thread([this] { run(); });
}

scripted_server::~scripted_server()
{
    ::eventfd_write(waker, 1); // never read: from now on nothing waits
    thread.join();
    ::close(listener);
    ::close(waker);
}

int scripted_server::connections() const
{
    const std::lock_guard lock(in_use);
    return connected;
}

QByteArray scripted_server::received() const
{
    const std::lock_guard lock(in_use);
    return lines;
}

QByteArray scripted_server::unexpected() const
{
    const std::lock_guard lock(in_use);
    return surprise;
}

// False: the test is over.
bool scripted_server::readable(int socket) const
{
    pollfd waits[] = {{socket, POLLIN, 0}, {waker, POLLIN, 0}};
    ::poll(waits, 2, -1);
    return !waits[1].revents;
}

void scripted_server::run()
{
    while (readable(listener)) {
        const int client = ::accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (client < 0)
            continue;
        waiting.clear();
        tag.clear();
        qsizetype turn = 0;
        {
            const std::lock_guard lock(in_use);
            turn = connected++;
        }
        play(scripts.at(std::min(turn, scripts.size() - 1)), client);
    }
}

void scripted_server::play(const script &steps, int client)
{
    for (const script_step &each : steps) {
        if (each.kind == script_step::reset)
            return close_with_reset(client);
        if (!step(each, client))
            break;
    }
    ::shutdown(client, SHUT_WR);
    char bytes[4096];
    while (readable(client) && ::recv(client, bytes, sizeof bytes, 0) > 0) // unread bytes would make it a reset
        continue;
    ::close(client);
}

// False: nothing more to play.
bool scripted_server::step(const script_step &each, int client)
{
    QByteArray text = each.bytes;
    QByteArray line;
    switch (each.kind) {
    case script_step::say:
        text.replace("%t", tag);
        return ::send(client, text.constData(), size_t(text.size()), MSG_NOSIGNAL) == text.size();
    case script_step::expect: {
        const bool ended = !read_line(client, line);
        const std::lock_guard lock(in_use);
        lines += ended ? QByteArray() : line + '\n';
        text.replace("%t", tag);
        if (surprise.isEmpty() && (ended || !line.startsWith(text)))
            surprise = (ended ? QByteArray("the end") : line) + " instead of " + text;
        return !ended && line.startsWith(text);
    }
    case script_step::wait_for_end:
    case script_step::say_for_ever:
    case script_step::answer_all:
        serve_until_it_goes(each, client);
        return false;
    case script_step::hang_up:
    case script_step::reset:
        return false;
    }
    return false;
}

void scripted_server::note(const QByteArray &line)
{
    const std::lock_guard lock(in_use);
    lines += line + '\n';
}

void scripted_server::serve_until_it_goes(const script_step &each, int client)
{
    const auto says = [client](const QByteArray &text) {
        return ::send(client, text.constData(), size_t(text.size()), MSG_NOSIGNAL) == text.size();
    };
    while (each.kind == script_step::say_for_ever && says(QByteArray(each.bytes).replace("%t", tag)))
        continue;
    QByteArray line;
    while (each.kind != script_step::say_for_ever && read_line(client, line)) {
        note(line);
        if (each.kind == script_step::answer_all && !says(QByteArray(each.bytes).replace("%t", tag)))
            return;
    }
}

bool scripted_server::read_line(int client, QByteArray &line)
{
    while (!waiting.contains('\n')) {
        char bytes[4096];
        const ssize_t got = readable(client) ? ::recv(client, bytes, sizeof bytes, 0) : 0;
        if (got <= 0)
            return false;
        waiting.append(bytes, got);
    }
    line = waiting.left(waiting.indexOf('\n'));
    waiting.remove(0, line.size() + 1);
    if (line.endsWith('\r'))
        line.chop(1);
    tag = line.left(line.indexOf(' ') < 0 ? line.size() : line.indexOf(' '));
    return true;
}
