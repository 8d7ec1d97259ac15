#include "support/smtp_sink.h"

#include "support/loopback.h"
#include "support/open_folder.h"
#include "support/smtp_session.h"
#include <QDebug>
#include <QDir>
#include <csignal>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

SSL_CTX *context_for(const certificate_files &files)
{
    if (files.empty())
        return nullptr;
    SSL_CTX *context = SSL_CTX_new(TLS_server_method());
    const QByteArray certificate = files.certificate.toLocal8Bit(), key = files.key.toLocal8Bit();
    if (!context || SSL_CTX_use_certificate_chain_file(context, certificate.constData()) != 1 ||
        SSL_CTX_use_PrivateKey_file(context, key.constData(), SSL_FILETYPE_PEM) != 1)
        qFatal("cannot use the certificate %s", certificate.constData());
    return context;
}

void serve(int socket, const smtp_options &options, smtp_shared &shared)
{
    sigset_t pipe;
    sigemptyset(&pipe);
    sigaddset(&pipe, SIGPIPE); // TLS writes to a client that is gone
    ::pthread_sigmask(SIG_BLOCK, &pipe, nullptr);
    smtp_session(socket, options, shared).run();
    const std::lock_guard lock(shared.in_use);
    shared.sockets.erase(socket);
    ::close(socket);
}

void take_connections(int listener, const smtp_options &options, smtp_shared &shared)
{
    for (;;) {
        const int socket = ::accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
        const std::lock_guard lock(shared.in_use);
        if (shared.stopping) {
            if (socket >= 0)
                close_with_reset(socket);
            return;
        }
        if (socket < 0)
            continue;
        const int on = 1;
        ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
        shared.sockets.insert(socket);
        ++shared.connections;
        shared.threads.emplace_back(serve, socket, std::cref(options), std::ref(shared));
    }
}

}

smtp_sink::smtp_sink(const smtp_options &wanted) : options(wanted)
{
    if (options.folder.isEmpty()) {
        own_folder = std::make_unique<QTemporaryDir>(folder_template("smtp"));
        options.folder = own_folder->path();
    }
    if (!QDir().mkpath(options.folder))
        qFatal("cannot make %s", qPrintable(options.folder));
    shared = std::make_unique<smtp_shared>(options.folder);
    shared->context = context_for(options.certificate);
    shared->faults = options.faults;
    start();
}

smtp_sink::~smtp_sink()
{
    stop();
    SSL_CTX_free(shared->context);
}

void smtp_sink::start()
{
    shared->stopping = false;
    listener = listen_loopback(options.port);
    thread = std::thread(take_connections, listener, std::cref(options), std::ref(*shared));
}

void smtp_sink::stop()
{
    if (listener < 0)
        return;
    {
        const std::lock_guard lock(shared->in_use);
        shared->stopping = true;
        const linger at_once{1, 0};
        for (const int socket : shared->sockets) {
            ::setsockopt(socket, SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once);
            ::shutdown(socket, SHUT_RD); // wakes its thread, whose close is then the reset
        }
    }
    ::shutdown(listener, SHUT_RDWR);
    thread.join();
    for (std::thread &each : shared->threads)
        each.join();
    shared->threads.clear();
    ::close(std::exchange(listener, -1));
}

void smtp_sink::set_faults(const QList<smtp_fault> &faults)
{
    const std::lock_guard lock(shared->in_use);
    shared->faults = faults;
}

int smtp_sink::taken() const
{
    const std::lock_guard lock(shared->in_use);
    return shared->recorder.taken();
}

int smtp_sink::connections() const
{
    const std::lock_guard lock(shared->in_use);
    return shared->connections;
}

int smtp_sink::logins() const
{
    const std::lock_guard lock(shared->in_use);
    return shared->logins;
}

QByteArrayList smtp_sink::complaints() const
{
    const std::lock_guard lock(shared->in_use);
    return shared->complaints;
}
