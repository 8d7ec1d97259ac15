// The line under an SMTP dialogue: a socket, TLS from some point on, and whole lines.
#pragma once
#include <QByteArray>
#include <chrono>
#include <openssl/ssl.h>

class smtp_line {
public:
    smtp_line(int socket, std::chrono::microseconds delay) : socket(socket), delay(delay) {}
    ~smtp_line();
    smtp_line(const smtp_line &) = delete;
    smtp_line &operator=(const smtp_line &) = delete;

    // False: the client is gone. What was written goes out before anything is waited for.
    bool read_line(QByteArray &line); // with its line end
    bool read_more();
    QByteArray received; // and not yet used
    void write(const QByteArray &bytes) { outgoing += bytes; }
    bool flush();
    bool start_tls(SSL_CTX *context);
    bool secured() const { return tls != nullptr; }
    void end_softly(bool goodbye); // the client may read to the end; with goodbye TLS says that it is one
    void wait_for_end();           // says nothing until the client goes
    void reset_at_end();           // the end becomes a reset

private:
    int socket;
    const std::chrono::microseconds delay;
    SSL *tls = nullptr;
    QByteArray outgoing;
};
