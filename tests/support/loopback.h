// Ports and plain sockets on the loopback network.
#pragma once
#include <QByteArray>
#include <QString>

// Free now, and outside of the range from which the system takes the ports of outgoing connections: a server that
// stops for a moment finds its port free again.
quint16 free_loopback_port();

// A socket, or -1 where nobody listens.
int connect_loopback(quint16 port, const QString &host = QStringLiteral("127.0.0.1"));
int listen_loopback(quint16 &port); // 0 becomes the port that was taken; ends the test when there is none
void close_with_reset(int socket);

// A conversation by lines, for tests that look at a server itself. Waits at most ten seconds for an answer.
class raw_connection {
public:
    explicit raw_connection(quint16 port, const QString &host = QStringLiteral("127.0.0.1"));
    ~raw_connection();
    raw_connection(const raw_connection &) = delete;
    raw_connection &operator=(const raw_connection &) = delete;

    void send(const QByteArray &bytes);
    QByteArray line();                     // without its CRLF; empty at the end
    QByteArray ask(const QByteArray &line) // adds CRLF and gives the first line of the answer
    {
        send(line + "\r\n");
        return this->line();
    }
    QByteArray up_to(const QByteArray &prefix); // lines, the first one that begins so included
    bool ended();                               // true: the other side closed, and said nothing more
    void reset();

private:
    bool receive();
    int socket;
    QByteArray waiting;
};
