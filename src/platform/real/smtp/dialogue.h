// The conversation with the server: commands out, answers in, and what it offers. What one mail needs to say and hear:
// mail_transfer.h.
#pragma once
#include "platform/real/net/stream.h"
#include "platform/real/smtp/offers.h"
#include <array>
#include <memory>

namespace smtp {

class dialogue {
public:
    dialogue(const net::place &where, const net::patience &patience); // logged in, and asked what it offers

    const offers &offered() const { return can; }
    bool is_broken() const { return !line; }
    void hang_up() { line.reset(); }

    void say(QByteArrayView bytes) { line->send(bytes); }
    qint64 said() const { return line->sent(); } // bytes that have left
    answer hear();                               // throws where what comes is no answer
    answer hear_last();                          // the word on a whole mail, which takes some servers a while
    std::optional<answer> hear_what_is_there();  // without waiting
    void quit();

    // Throws when the server has spoken without being asked: an answer that fits nothing would be taken for the next.
    void expect_silence();
    bool has_more() const { return !reader.is_empty(); } // behind the answer that was just heard

    // Why the conversation ends when this was heard; 421 is the server's own way to say so.
    run_time_error misfit(const answer &said) const;
    run_time_error login_failure(const answer &said) const; // no mail without another login
    QString parting_words();                                // what it says although the line broke; "" when nothing

    bool needs_reset = false; // the last mail did not come to its end

private:
    void fill(); // waits for bytes

    QString name;
    net::patience patience;
    std::unique_ptr<net::stream> line;
    answer_reader reader;
    offers can;
    std::array<char, 16384> buffer;
};

}
