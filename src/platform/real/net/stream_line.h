// What stands behind a stream. Connecting and logging in: stream_connect.cpp; bytes both ways: stream.cpp.
#pragma once
#include "platform/real/net/stream.h"
#include <QElapsedTimer>
#include <curl/curl.h>
#include <sys/socket.h>

namespace net {

struct stream::line {
    CURL *handle = nullptr;
    curl_socket_t socket = CURL_SOCKET_BAD;
    place where;
    net::patience patience;
    bool given_up = false;
    qint64 sent = 0;
    QByteArrayList lines;
    QByteArray ahead; // read to see whether something is there; encrypted bytes do not show on the socket
    qsizetype ahead_at = 0;
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

    void connect(); // and logs in

    void set_up(const QByteArray &url);
    void set_up_patience();
    void set_up_encryption();
    void set_up_login();
    void wait(short what_for, QElapsedTimer &since);
    qsizetype take(char *buffer, qsizetype size); // 0: nothing is there
    qsizetype take_now(char *buffer, qsizetype size);
    bool read_ahead();
    bool has_ahead() const { return ahead_at < ahead.size(); }
    bool is_given_up() { return given_up = given_up || (patience.give_up && patience.give_up()); }

    static size_t take_line(char *bytes, size_t size, size_t count, void *self);
    static int asked_to_go_on(void *self, curl_off_t, curl_off_t, curl_off_t, curl_off_t);
};

}
