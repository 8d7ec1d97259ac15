#include "support/wire_proxy.h"

#include "support/loopback.h"
#include "support/wire_connection.h"
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

wire_proxy::wire_proxy(quint16 of_server, const wire_options &wanted, const QString &host_of_server)
    : server_port(of_server), server_host(host_of_server), options(wanted), ledger(std::make_unique<wire_ledger>())
{
    listener = listen_loopback(port);
    waker = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    thread = std::thread([this] { run(); });
}

wire_proxy::~wire_proxy()
{
    {
        const std::lock_guard lock(in_use);
        stopping = true;
    }
    wake();
    thread.join();
    connections.clear();
    ::close(listener);
    ::close(waker);
}

void wire_proxy::wake()
{
    ::eventfd_write(waker, 1);
}

void wire_proxy::set(const wire_options &wanted)
{
    const std::lock_guard lock(in_use);
    options = wanted;
    number = 0;
}

wire_counts wire_proxy::counts() const
{
    const std::lock_guard lock(ledger->in_use);
    return ledger->counts;
}

QByteArray wire_proxy::recorded(wire direction) const
{
    const std::lock_guard lock(ledger->in_use);
    return direction == wire::to_server ? ledger->sent_by_client : ledger->told_to_client;
}

void wire_proxy::forget()
{
    const std::lock_guard lock(ledger->in_use);
    ledger->counts = {};
    ledger->sent_by_client.clear();
    ledger->told_to_client.clear();
}

void wire_proxy::reset_connections()
{
    {
        const std::lock_guard lock(in_use);
        resetting = true;
    }
    wake();
}

// A server that is not there shows to the client as an end before any greeting.
void wire_proxy::accept_one()
{
    const int client = ::accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
    if (client < 0)
        return;
    const int server = connect_loopback(server_port, server_host);
    if (server < 0) {
        ::close(client);
        return;
    }
    const int on = 1;
    ::setsockopt(client, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    for (const int socket : {client, server})
        ::fcntl(socket, F_SETFL, ::fcntl(socket, F_GETFL) | O_NONBLOCK);
    const std::lock_guard lock(in_use);
    {
        const std::lock_guard counting(ledger->in_use);
        ++ledger->counts.connections;
    }
    connections.push_back(std::make_unique<wire_connection>(client, server, options, number++, *ledger));
}

int wire_proxy::poll_once()
{
    std::vector<pollfd> waits(2 + 2 * connections.size());
    waits[0] = {waker, POLLIN, 0};
    waits[1] = {listener, POLLIN, 0};
    std::optional<wire_connection::clock::time_point> due;
    for (size_t at = 0; at < connections.size(); ++at) {
        connections[at]->wishes(waits[2 + 2 * at], waits[3 + 2 * at]);
        if (const auto next = connections[at]->next_due())
            due = due ? std::min(*due, *next) : *next;
    }
    timespec longest{};
    if (due) {
        const auto left =
            std::max(std::chrono::nanoseconds{0}, std::chrono::nanoseconds(*due - wire_connection::clock::now()));
        longest.tv_sec = left.count() / 1000000000;
        longest.tv_nsec = left.count() % 1000000000;
    }
    ::ppoll(waits.data(), waits.size(), due ? &longest : nullptr, nullptr);
    for (size_t at = 0; at < connections.size(); ++at)
        connections[at]->serve(waits[2 + 2 * at], waits[3 + 2 * at]);
    std::erase_if(connections, [](const auto &each) { return each->finished(); });
    if (waits[1].revents)
        accept_one();
    eventfd_t ignored = 0;
    return waits[0].revents ? ::eventfd_read(waker, &ignored) : 0;
}

void wire_proxy::run()
{
    for (;;) {
        poll_once();
        const std::lock_guard lock(in_use);
        if (stopping)
            return;
        if (std::exchange(resetting, false))
            for (const auto &each : connections)
                each->reset();
        std::erase_if(connections, [](const auto &each) { return each->finished(); });
    }
}
