#include "support/smtp_line.h"

#include <openssl/err.h>
#include <sys/socket.h>
#include <thread>

smtp_line::~smtp_line()
{
    SSL_free(tls); // the socket is its owner's
}

bool smtp_line::read_more()
{
    if (!flush())
        return false;
    char bytes[65536];
    const auto got = tls ? SSL_read(tls, bytes, sizeof bytes) : ::recv(socket, bytes, sizeof bytes, 0);
    ERR_clear_error();
    if (got > 0)
        received.append(bytes, got);
    return got > 0;
}

bool smtp_line::read_line(QByteArray &line)
{
    qsizetype end = received.indexOf('\n');
    while (end < 0) {
        if (!read_more())
            return false;
        end = received.indexOf('\n');
    }
    line = received.left(end + 1);
    received.remove(0, end + 1);
    return true;
}

bool smtp_line::flush()
{
    if (outgoing.isEmpty())
        return true;
    if (delay.count() > 0)
        std::this_thread::sleep_for(delay);
    const QByteArray bytes = std::exchange(outgoing, {});
    if (tls)
        return SSL_write(tls, bytes.constData(), int(bytes.size())) == bytes.size(); // all or nothing, as it may block
    return ::send(socket, bytes.constData(), size_t(bytes.size()), MSG_NOSIGNAL) == bytes.size();
}

bool smtp_line::start_tls(SSL_CTX *context)
{
    if (!flush())
        return false;
    received.clear(); // what came in plain text behind STARTTLS counts for nothing
    tls = SSL_new(context);
    const bool agreed = tls && SSL_set_fd(tls, socket) == 1 && SSL_accept(tls) == 1;
    ERR_clear_error();
    return agreed;
}

void smtp_line::end_softly(bool goodbye)
{
    flush();
    if (tls && goodbye)
        SSL_shutdown(tls);
    ERR_clear_error();
    ::shutdown(socket, SHUT_WR);
    wait_for_end(); // a socket closed with something unread in it would be a reset
}

void smtp_line::wait_for_end()
{
    flush();
    char bytes[65536];
    while (::recv(socket, bytes, sizeof bytes, 0) > 0)
        continue;
}

void smtp_line::reset_at_end()
{
    flush();
    const linger at_once{1, 0};
    ::setsockopt(socket, SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once);
}
