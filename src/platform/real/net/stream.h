// A logged-in, if wanted secured, byte stream to a mail server. libcurl finds the host, checks the certificate, speaks
// STARTTLS and logs in; everything behind that is ours to say: real/imap, real/mail_session, real/smtp.
//
// What the server sent in the same breath as its last word about the login may be lost: begin with a command of your
// own, and pass over what comes before its answer.
#pragma once
#include "platform/mail_settings.h"
#include "platform/network.h"
#include <QByteArray>
#include <QByteArrayList>
#include <memory>

namespace net {

enum class protocol { imap, pop3, smtp };

struct place {
    protocol speaks = protocol::imap;
    mail::server server; // an empty user logs in as nobody (smtp only)
    QString password;
    QString token; // not empty: XOAUTH2 with it, instead of the password
    QString authority_file;
};

class stream {
public:
    // Connected and logged in when it is there. Throws a net::failure whose description names the server.
    stream(const place &where, const patience &patience);
    ~stream(); // hangs up at once; say goodbye before
    stream(const stream &) = delete;
    stream &operator=(const stream &) = delete;

    void send(QByteArrayView bytes); // all of them; throws closed, timed_out, cancelled
    qint64 sent() const;             // so many bytes in all, also when send has thrown
    // What is there, at least one byte; waits for it. Throws the same.
    qsizetype receive(char *buffer, qsizetype size);
    bool has_waiting(int ms); // whether receive would not wait, after at most ms; throws closed

    const QByteArrayList &server_lines() const; // of connecting and logging in, without line ends; the last 200
    void set_patience(const patience &patience);

private:
    struct line;
    std::unique_ptr<line> self;
};

// "imap.example.org": for sentences.
QString name_of(const place &where);

// What the program calls itself in EHLO: an address in place of a name, right everywhere, tells nothing of the machine.
QString own_smtp_name();

}
