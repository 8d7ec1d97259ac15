#include "support/loopback.h"

#include <QDebug>
#include <QRandomGenerator>
#include <arpa/inet.h>
#include <cerrno>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr int patience = 10000;

sockaddr_in address_of(const QByteArray &host, quint16 port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    if (::inet_pton(AF_INET, host.constData(), &address.sin_addr) != 1)
        qFatal("not an address: %s", host.constData());
    return address;
}

int bound_socket(quint16 port)
{
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int on = 1;
    ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    const sockaddr_in address = address_of("127.0.0.1", port);
    if (::bind(socket, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0 && ::listen(socket, 128) == 0)
        return socket;
    ::close(socket);
    return -1;
}

}

int listen_loopback(quint16 &port)
{
    for (int attempt = 0; attempt < 200; ++attempt) {
        const auto tried = port ? port : static_cast<quint16>(QRandomGenerator::global()->bounded(10000, 32000));
        const int socket = bound_socket(tried);
        if (socket >= 0) {
            port = tried;
            return socket;
        }
        if (port)
            qFatal("cannot listen on port %d of 127.0.0.1: %s", port, std::strerror(errno));
    }
    qFatal("no free port on 127.0.0.1: %s", std::strerror(errno));
}

quint16 free_loopback_port()
{
    quint16 port = 0;
    ::close(listen_loopback(port));
    return port;
}

int connect_loopback(quint16 port, const QString &host)
{
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_in address = address_of(host.toLatin1(), port);
    if (::connect(socket, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0) {
        ::close(socket);
        return -1;
    }
    const int on = 1;
    ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    return socket;
}

void close_with_reset(int socket)
{
    const linger at_once{1, 0};
    ::setsockopt(socket, SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once);
    ::close(socket);
}

raw_connection::raw_connection(quint16 port, const QString &host) : socket(connect_loopback(port, host))
{
    if (socket < 0)
        qFatal("nobody listens on port %d of %s", port, qPrintable(host));
}

raw_connection::~raw_connection()
{
    if (socket >= 0)
        ::close(socket);
}

void raw_connection::reset()
{
    close_with_reset(std::exchange(socket, -1));
}

void raw_connection::send(const QByteArray &bytes)
{
    for (qsizetype sent = 0; sent < bytes.size();) {
        const ssize_t now = ::send(socket, bytes.constData() + sent, size_t(bytes.size() - sent), MSG_NOSIGNAL);
        if (now <= 0)
            return; // what the other side makes of it shows when it is read
        sent += now;
    }
}

bool raw_connection::receive()
{
    pollfd waits{socket, POLLIN, 0};
    if (::poll(&waits, 1, patience) != 1)
        qFatal("no answer within ten seconds");
    char bytes[16384];
    const ssize_t got = ::recv(socket, bytes, sizeof bytes, 0);
    if (got > 0)
        waiting.append(bytes, got);
    return got > 0;
}

QByteArray raw_connection::line()
{
    qsizetype end = waiting.indexOf('\n');
    while (end < 0 && receive())
        end = waiting.indexOf('\n');
    QByteArray found = waiting.left(end < 0 ? waiting.size() : end);
    waiting.remove(0, end < 0 ? waiting.size() : end + 1);
    if (found.endsWith('\r'))
        found.chop(1);
    return found;
}

QByteArray raw_connection::up_to(const QByteArray &prefix)
{
    QByteArray said;
    for (;;) {
        const QByteArray next = line();
        said += next + '\n';
        if (next.startsWith(prefix) || (next.isEmpty() && waiting.isEmpty() && ended()))
            return said;
    }
}

bool raw_connection::ended()
{
    return waiting.isEmpty() && !receive();
}
