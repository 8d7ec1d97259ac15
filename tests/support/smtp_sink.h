// An SMTP server that records what it takes and fails where it is told to. A thread a connection.
// The dialogue: smtp_session.h. The same as a program: the target smtp_sink.
#pragma once
#include "support/certificates.h"
#include "support/recorded_mails.h"
#include <QStringList>
#include <QTemporaryDir>
#include <chrono>
#include <memory>
#include <thread>

struct smtp_shared;

enum class smtp_step {
    connect, // instead of the greeting
    ehlo,
    starttls,
    auth,
    mail,
    rcpt,
    data,
    body,     // when body_bytes of a mail have come; an answer here comes at once and ends the connection
    final,    // the mail is there whole, and not recorded
    recorded, // recorded, but not yet answered
    quit,
};

struct smtp_fault {
    enum deed_of { close, reset, stall, answer };
    smtp_step at = smtp_step::final;
    deed_of deed = close;
    QByteArray text = {}; // of an answer: "451 4.3.0 Later"; 421 closes behind it
    int after_mails = 0;  // not before so many are recorded, on all connections together
    int times = 1;        // -1: always
    qint64 body_bytes = 1;
};

struct smtp_refusal {
    QString pattern;     // an address with wildcards: "*@example.net"
    QByteArray reply;    // "550 5.1.1 No such user"
    bool sender = false; // of MAIL; else of RCPT
};

struct smtp_options {
    QString folder = {}; // where mails are recorded; empty: a temporary one
    quint16 port = 0;    // 0: a free one
    certificate_files certificate = {};
    bool tls_at_once = false;                     // with a certificate; else STARTTLS is offered
    QString user = {}, password = {}, token = {}; // with a user nobody sends without a login
    QStringList mechanisms{"PLAIN", "LOGIN", "XOAUTH2"};
    bool login_without_tls = false;                        // although there is a certificate
    bool pipelining = true, eight_bit = true, utf8 = true; // what is offered
    qint64 size = 50 << 20;                                // of a mail; 0: SIZE is not offered
    QList<smtp_fault> faults = {};
    QList<smtp_refusal> refusals = {};
    std::chrono::microseconds delay{0}; // before each write; answers to pipelined commands are one
};

class smtp_sink {
public:
    explicit smtp_sink(const smtp_options &options = {}); // listens when it is made; else the test ends
    ~smtp_sink();
    smtp_sink(const smtp_sink &) = delete;
    smtp_sink &operator=(const smtp_sink &) = delete;

    quint16 port() const { return options.port; }
    QString folder() const { return options.folder; }
    QList<recorded_mail> mails() const { return recorded_mails(options.folder); }
    int taken() const; // so many are recorded
    int connections() const;
    int logins() const;
    QByteArrayList complaints() const; // what no server has to bear: "pipelined unasked", "bare LF", ...

    void set_faults(const QList<smtp_fault> &faults);
    void stop();  // resets what is open
    void start(); // on the same port

private:
    smtp_options options;
    std::unique_ptr<QTemporaryDir> own_folder;
    std::unique_ptr<smtp_shared> shared;
    int listener = -1;
    std::thread thread;
};
