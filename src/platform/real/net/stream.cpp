#include "platform/real/net/stream.h"
#include "platform/real/net/connect_failure.h"
#include <QElapsedTimer>
#include <QUrl>
#include <algorithm>
#include <array>
#include <cctype>
#include <csignal>
#include <curl/curl.h>
#include <poll.h>
#include <sys/socket.h>

namespace net {

namespace {

constexpr int slice_ms = 50; // how often a waiting is asked whether it shall end
constexpr qsizetype most_lines = 200;
constexpr qsizetype longest_line = 2000;

bool made_ready()
{
    std::signal(SIGPIPE, SIG_IGN); // a server that hangs up is a failure to tell, not the end of the process
    return curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
}

bool is_one_line(const QString &text)
{
    return std::none_of(text.begin(), text.end(),
                        [](QChar letter) { return letter.category() == QChar::Other_Control; });
}

QByteArray ascii_host(const QString &host)
{
    const QByteArray name = host.contains(u':') ? '[' + host.toLatin1() + ']' : QUrl::toAce(host);
    const bool plain = std::all_of(name.begin(), name.end(), [](char letter) {
        return std::isalnum(uchar(letter)) || letter == '.' || letter == '-' || letter == '_' || letter == ':' ||
               letter == '[' || letter == ']';
    });
    return plain ? name : QByteArray();
}

const char *scheme_of(const place &where)
{
    const bool tls = where.server.secured == mail::security::tls;
    switch (where.speaks) {
    case protocol::imap:
        return tls ? "imaps" : "imap";
    case protocol::pop3:
        return tls ? "pop3s" : "pop3";
    case protocol::smtp:
        break;
    }
    return tls ? "smtps" : "smtp";
}

int port_of(const place &where)
{
    if (where.server.port != 0)
        return where.server.port;
    if (where.speaks == protocol::smtp)
        return mail::usual_smtp_port(where.server.secured);
    return mail::usual_port(where.speaks == protocol::imap ? mail::client_kind::imap : mail::client_kind::pop3,
                            where.server.secured);
}

QByteArray address_of(const place &where)
{
    const QByteArray host = ascii_host(where.server.host.trimmed());
    if (host.isEmpty())
        throw failure(trouble::not_configured,
                      where.server.host.trimmed().isEmpty()
                          ? QStringLiteral("No server is set.")
                          : QStringLiteral("\"%1\" cannot be the name of a server.").arg(where.server.host.trimmed()));
    if (!is_one_line(where.server.user) || !is_one_line(where.password) || !is_one_line(where.token))
        throw failure(trouble::not_configured,
                      QStringLiteral("The user name or the password holds a line end or another control character."));
    const QByteArray own_name =
        where.speaks == protocol::smtp ? QUrl::toPercentEncoding(own_smtp_name()) : QByteArray();
    return QByteArray(scheme_of(where)) + "://" + host + ':' + QByteArray::number(port_of(where)) + '/' + own_name;
}

}

struct stream::line {
    CURL *handle = nullptr;
    curl_socket_t socket = CURL_SOCKET_BAD;
    place where;
    net::patience patience;
    bool given_up = false;
    QByteArrayList lines;
    QByteArray ahead; // read to see whether something is there; encrypted bytes do not show on the socket
    char words[CURL_ERROR_SIZE] = "";

    line(const place &to, const net::patience &how_long) : where(to), patience(how_long) {}
    ~line()
    {
        if (socket != CURL_SOCKET_BAD)
            shutdown(socket, SHUT_RDWR); // else the library says goodbye by itself, and waits for the answer
        curl_easy_cleanup(handle);
    }
    line(const line &) = delete;
    line &operator=(const line &) = delete;

    void set_up(const QByteArray &address);
    void set_up_login();
    void connect();
    void wait(short what_for, QElapsedTimer &since);
    qsizetype take(char *buffer, qsizetype size); // 0: nothing is there
    bool is_given_up() { return given_up = given_up || (patience.give_up && patience.give_up()); }

    static size_t take_line(char *bytes, size_t size, size_t count, void *self);
    static int asked_to_go_on(void *self, curl_off_t, curl_off_t, curl_off_t, curl_off_t);
};

size_t stream::line::take_line(char *bytes, size_t size, size_t count, void *self)
{
    auto &lines = static_cast<line *>(self)->lines;
    QByteArray text(bytes, qMin(qsizetype(size * count), longest_line));
    while (text.endsWith('\n') || text.endsWith('\r'))
        text.chop(1);
    if (lines.size() == most_lines)
        lines.removeFirst();
    lines.append(text);
    return size * count;
}

int stream::line::asked_to_go_on(void *self, curl_off_t, curl_off_t, curl_off_t, curl_off_t)
{
    return static_cast<line *>(self)->is_given_up() ? 1 : 0;
}

void stream::line::set_up(const QByteArray &address)
{
    static const bool ready = made_ready();
    handle = ready ? curl_easy_init() : nullptr;
    if (!handle)
        throw failure(trouble::not_reached, QStringLiteral("The network library cannot be used."));
    curl_easy_setopt(handle, CURLOPT_URL, address.constData());
    curl_easy_setopt(handle, CURLOPT_CONNECT_ONLY, 1L);
    curl_easy_setopt(handle, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(handle, CURLOPT_QUICK_EXIT, 1L); // a name server that does not answer holds nobody up
    curl_easy_setopt(handle, CURLOPT_PROXY, "");
    curl_easy_setopt(handle, CURLOPT_NETRC, long(CURL_NETRC_IGNORED));
    curl_easy_setopt(handle, CURLOPT_TCP_NODELAY, 1L);
    curl_easy_setopt(handle, CURLOPT_TCP_KEEPALIVE, 1L);
    curl_easy_setopt(handle, CURLOPT_CONNECTTIMEOUT_MS, long(patience.connect_ms));
    curl_easy_setopt(handle, CURLOPT_TIMEOUT_MS, long(patience.connect_ms));
    curl_easy_setopt(handle, CURLOPT_USE_SSL,
                     long(where.server.secured == mail::security::none ? CURLUSESSL_NONE : CURLUSESSL_ALL));
    curl_easy_setopt(handle, CURLOPT_SSL_VERIFYPEER, 1L);
    curl_easy_setopt(handle, CURLOPT_SSL_VERIFYHOST, 2L);
    curl_easy_setopt(handle, CURLOPT_SSLVERSION, long(CURL_SSLVERSION_TLSv1_2));
    if (!where.authority_file.isEmpty())
        curl_easy_setopt(handle, CURLOPT_CAINFO, where.authority_file.toLocal8Bit().constData());
    curl_easy_setopt(handle, CURLOPT_ERRORBUFFER, words);
    curl_easy_setopt(handle, CURLOPT_HEADERFUNCTION, &line::take_line);
    curl_easy_setopt(handle, CURLOPT_HEADERDATA, this);
    curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, &line::take_line);
    curl_easy_setopt(handle, CURLOPT_WRITEDATA, this);
    curl_easy_setopt(handle, CURLOPT_NOPROGRESS, 0L);
    curl_easy_setopt(handle, CURLOPT_XFERINFOFUNCTION, &line::asked_to_go_on);
    curl_easy_setopt(handle, CURLOPT_XFERINFODATA, this);
}

void stream::line::set_up_login()
{
    if (where.server.user.isEmpty())
        return;
    curl_easy_setopt(handle, CURLOPT_USERNAME, where.server.user.toUtf8().constData());
    if (where.token.isEmpty()) {
        curl_easy_setopt(handle, CURLOPT_PASSWORD, where.password.toUtf8().constData());
        return;
    }
    curl_easy_setopt(handle, CURLOPT_LOGIN_OPTIONS, "AUTH=XOAUTH2");
    curl_easy_setopt(handle, CURLOPT_XOAUTH2_BEARER, where.token.toLatin1().constData());
}

void stream::line::connect()
{
    const CURLcode code = curl_easy_perform(handle);
    if (code != CURLE_OK)
        throw connect_failure(where, code, given_up, QString::fromLocal8Bit(words), lines);
    curl_easy_getinfo(handle, CURLINFO_ACTIVESOCKET, &socket);
    if (socket == CURL_SOCKET_BAD)
        throw failure(trouble::closed, name_of(where) + QStringLiteral(" closed the connection."));
}

qsizetype stream::line::take(char *buffer, qsizetype size)
{
    if (!ahead.isEmpty()) {
        const qsizetype count = qMin(size, ahead.size());
        std::copy_n(ahead.cbegin(), count, buffer);
        ahead.remove(0, count);
        return count;
    }
    size_t come = 0;
    const CURLcode code = curl_easy_recv(handle, buffer, size_t(size), &come);
    if (code == CURLE_AGAIN)
        return 0;
    if (code != CURLE_OK || come == 0)
        throw failure(trouble::closed, name_of(where) + QStringLiteral(" closed the connection."));
    return qsizetype(come);
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
    self->set_up(address_of(where));
    self->set_up_login();
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
        if (gone > 0)
            since.restart();
        else
            self->wait(POLLOUT, since);
    }
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
    if (!self->ahead.isEmpty())
        return true;
    std::array<char, 4096> bytes;
    for (const bool may_wait : {true, false}) {
        const qsizetype come = self->take(bytes.data(), bytes.size());
        if (come > 0) {
            self->ahead = QByteArray(bytes.data(), come);
            return true;
        }
        pollfd one{self->socket, POLLIN, 0};
        if (may_wait && poll(&one, 1, ms) == 0)
            return false;
    }
    return false;
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

QString name_of(const place &where)
{
    return where.server.host.trimmed();
}

QString own_smtp_name()
{
    return QStringLiteral("[127.0.0.1]");
}

}
