#include "platform/real/net/connect_failure.h"
#include "platform/real/net/server_url.h"
#include "platform/real/net/stream_line.h"
#include <algorithm>
#include <cerrno>
#include <csignal>

namespace net {

namespace {

constexpr qsizetype most_lines = 200;
constexpr qsizetype longest_line = 2000;
constexpr qsizetype shortest_secret = 4; // less is found in any word

bool made_ready()
{
    std::signal(SIGPIPE, SIG_IGN); // a server that hangs up is a failure to tell, not the end of the process
    return curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
}

// Whether the server takes a name and a password by SASL: "AUTH=PLAIN", "SASL PLAIN", "250-AUTH LOGIN".
bool offers_plain_login(const QByteArrayList &lines)
{
    return std::any_of(lines.begin(), lines.end(), [](const QByteArray &line) {
        const QByteArray words = line.toUpper().replace('=', ' ').replace('-', ' ') + ' ';
        return (words.contains(" AUTH ") || words.startsWith("SASL ")) &&
               (words.contains(" PLAIN ") || words.contains(" LOGIN "));
    });
}

// A server that takes the connection and resets it: the library may see the reset before it sees the connection.
bool hung_up_at_once(CURL *handle, CURLcode code)
{
    long system_error = 0;
    curl_easy_getinfo(handle, CURLINFO_OS_ERRNO, &system_error);
    return code == CURLE_COULDNT_CONNECT && system_error == ECONNRESET;
}

// The library passes over a login that a sending server does not offer.
bool was_let_in(const QByteArrayList &lines)
{
    return std::any_of(lines.begin(), lines.end(), [](const QByteArray &line) { return line.startsWith("235"); });
}

// The longest first: a short one may stand within it.
QByteArrayList secrets_of(const place &where)
{
    const QByteArray user = where.server.user.toUtf8(), password = where.password.toUtf8(),
                     token = where.token.toUtf8();
    QByteArrayList secrets{
        password, password.toBase64(), ('\0' + user + '\0' + password).toBase64(),
        token,    token.toBase64(),    ("user=" + user + "\1auth=Bearer " + token + "\1\1").toBase64()};
    secrets.removeIf([](const QByteArray &secret) { return secret.size() < shortest_secret; });
    std::sort(secrets.begin(), secrets.end(),
              [](const QByteArray &left, const QByteArray &right) { return left.size() > right.size(); });
    return secrets;
}

// A server may say anything, also what it was told; and its line may have been cut in the middle of that.
QByteArray hidden_secrets(const place &where, QByteArray words)
{
    const QByteArrayList secrets = secrets_of(where);
    for (const QByteArray &secret : secrets)
        words.replace(secret, "***");
    for (const QByteArray &secret : secrets)
        for (qsizetype size = secret.size() - 1; size >= shortest_secret; --size)
            if (words.endsWith(secret.first(size)))
                return words.chopped(size) + "***";
    return words;
}

}

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

void stream::line::set_up(const QByteArray &url)
{
    static const bool ready = made_ready();
    handle = ready ? curl_easy_init() : nullptr;
    if (!handle)
        throw failure(trouble::not_reached, QStringLiteral("The network library cannot be used."));
    curl_easy_setopt(handle, CURLOPT_URL, url.constData());
    curl_easy_setopt(handle, CURLOPT_CONNECT_ONLY, 1L);
    curl_easy_setopt(handle, CURLOPT_PROXY, "");
    curl_easy_setopt(handle, CURLOPT_NETRC, long(CURL_NETRC_IGNORED));
    curl_easy_setopt(handle, CURLOPT_TCP_NODELAY, 1L);
    curl_easy_setopt(handle, CURLOPT_TCP_KEEPALIVE, 1L);
    set_up_patience();
    set_up_encryption();
    set_up_login();
    curl_easy_setopt(handle, CURLOPT_ERRORBUFFER, words);
    curl_easy_setopt(handle, CURLOPT_HEADERFUNCTION, &line::take_line);
    curl_easy_setopt(handle, CURLOPT_HEADERDATA, this);
    curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, &line::take_line);
    curl_easy_setopt(handle, CURLOPT_WRITEDATA, this);
}

void stream::line::set_up_patience()
{
    curl_easy_setopt(handle, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(handle, CURLOPT_QUICK_EXIT, 1L); // a name server that does not answer holds nobody up
    curl_easy_setopt(handle, CURLOPT_CONNECTTIMEOUT_MS, long(patience.connect_ms));
    curl_easy_setopt(handle, CURLOPT_TIMEOUT_MS, long(patience.connect_ms));
    curl_easy_setopt(handle, CURLOPT_NOPROGRESS, 0L);
    curl_easy_setopt(handle, CURLOPT_XFERINFOFUNCTION, &line::asked_to_go_on);
    curl_easy_setopt(handle, CURLOPT_XFERINFODATA, this);
}

void stream::line::set_up_encryption()
{
    curl_easy_setopt(handle, CURLOPT_USE_SSL,
                     long(where.server.secured == mail::security::none ? CURLUSESSL_NONE : CURLUSESSL_ALL));
    curl_easy_setopt(handle, CURLOPT_SSL_VERIFYPEER, 1L);
    curl_easy_setopt(handle, CURLOPT_SSL_VERIFYHOST, 2L);
    curl_easy_setopt(handle, CURLOPT_SSLVERSION, long(CURL_SSLVERSION_TLSv1_2));
    // In place of the file of all that the system knows; its folder of the same stays in force beside it.
    if (!where.authority_file.isEmpty())
        curl_easy_setopt(handle, CURLOPT_CAINFO, where.authority_file.toLocal8Bit().constData());
}

void stream::line::set_up_login()
{
    if (where.server.user.isEmpty())
        return;
    curl_easy_setopt(handle, CURLOPT_USERNAME, where.server.user.toUtf8().constData());
    if (where.token.isEmpty()) {
        curl_easy_setopt(handle, CURLOPT_PASSWORD, where.password.toUtf8().constData());
        // Left to itself the library takes to GSSAPI or NTLM where a company's server offers them, and fails there.
        curl_easy_setopt(handle, CURLOPT_LOGIN_OPTIONS, "AUTH=PLAIN;AUTH=LOGIN");
        return;
    }
    curl_easy_setopt(handle, CURLOPT_LOGIN_OPTIONS, "AUTH=XOAUTH2");
    curl_easy_setopt(handle, CURLOPT_XOAUTH2_BEARER, where.token.toLatin1().constData());
}

void stream::line::connect()
{
    set_up(url_of(where));
    CURLcode code = curl_easy_perform(handle);
    if (code == CURLE_LOGIN_DENIED && where.token.isEmpty() && !offers_plain_login(lines)) {
        // The password was not asked for. Whatever else both can: CRAM-MD5, or the login command of IMAP and POP3.
        lines.clear();
        curl_easy_setopt(handle, CURLOPT_LOGIN_OPTIONS, nullptr);
        code = curl_easy_perform(handle);
    }
    if (hung_up_at_once(handle, code))
        code = CURLE_RECV_ERROR;
    if (code != CURLE_OK) {
        for (QByteArray &said : lines) // while they are whole: what is shown of them is shorter
            said = hidden_secrets(where, said);
        throw connect_failure(where, code, given_up, QString::fromLocal8Bit(hidden_secrets(where, words)), lines);
    }
    curl_easy_getinfo(handle, CURLINFO_ACTIVESOCKET, &socket);
    if (socket == CURL_SOCKET_BAD)
        throw failure(trouble::closed, name_of(where) + QStringLiteral(" closed the connection."));
    if (where.speaks == protocol::smtp && !where.server.user.isEmpty() && !was_let_in(lines))
        throw failure(
            trouble::login_refused,
            QStringLiteral("%1 does not offer to log in. Does it want another kind of encryption, or no login?")
                .arg(name_of(where)));
}

}
