// One dialogue of smtp_sink with a client. Its mails: smtp_session_mail.cpp
#pragma once
#include "support/smtp_line.h"
#include "support/smtp_sink.h"
#include <mutex>
#include <optional>
#include <set>

// What the connections of a sink have in common.
struct smtp_shared {
    explicit smtp_shared(const QString &folder) : recorder(folder) {}

    mutable std::mutex in_use;
    bool stopping = false;
    std::set<int> sockets;
    int connections = 0, logins = 0;
    mail_recorder recorder;
    QList<smtp_fault> faults;
    QByteArrayList complaints;
    SSL_CTX *context = nullptr;
    std::vector<std::thread> threads;

    std::optional<smtp_fault> due(smtp_step step, qint64 body_bytes = 0); // and uses it up
    void complain(const QByteArray &about);
};

class smtp_session {
public:
    smtp_session(int socket, const smtp_options &options, smtp_shared &shared)
        : line(socket, options.delay), options(options), shared(shared)
    {
    }
    void run();

private:
    void greet();
    void command(const QByteArray &text);
    void ehlo(bool extended);
    void starttls();
    void auth(const QByteArray &words);
    bool credentials_right(const QByteArray &mechanism, const QByteArray &first);
    QByteArray ask(const QByteArray &prompt);
    void mail(const QByteArray &words);
    void rcpt(const QByteArray &words);
    void data();
    bool read_body(QByteArray &bytes);
    void judge_body(const QByteArray &bytes);
    void quit();

    void answer(const QByteArray &text) { line.write(text + "\r\n"); }
    bool struck(smtp_step step, qint64 body_bytes = 0);
    std::optional<QByteArray> refused(const QByteArray &address, bool sender) const;
    bool login_offered() const;

    smtp_line line;
    const smtp_options &options;
    smtp_shared &shared;
    bool over = false, polite = false, logged_in = false, mail_open = false;
    recorded_mail current;
};
