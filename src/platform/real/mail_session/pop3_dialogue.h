// The conversation with a POP3 server: commands out, answers in, many at once where it takes them. Nothing is ever
// deleted: there is no such command here.
#pragma once
#include "platform/real/mail_session/pop3_reader.h"
#include "platform/real/net/stream.h"
#include <QByteArrayList>
#include <array>
#include <functional>
#include <memory>

namespace pop3 {

class dialogue {
public:
    dialogue(const net::place &where, const net::patience &patience); // logged in

    answer ask(const QByteArray &command, form wanted, qsizetype keep = 64 * 1024);
    // The same for many commands, whose answers have many lines; in their order. In one write for each hundred where
    // the server offers it.
    void ask_all(const QByteArrayList &commands, qsizetype keep, const std::function<void(qsizetype, answer)> &take);
    void quit();

    run_time_error refusal(const answer &said) const; // as a failure that tells the server's words

private:
    void say(const QByteArray &bytes) { line.send(bytes); }
    answer hear(form wanted, qsizetype keep);
    bool can_pipeline();

    QString name;
    net::patience patience;
    net::stream line;
    answer_reader reader;
    std::optional<bool> pipelining;
    std::array<char, 16384> buffer;
};

}
