// One mail over an open conversation: who is asked for, the bytes, and what became of each recipient. Its envelope may
// go behind the end of the mail before it; what is answered then is kept until the mail's own turn.
#pragma once
#include "platform/real/smtp/dialogue.h"
#include "platform/real/smtp/smtp_session.h"
#include "platform/real/smtp/wire_form.h"
#include <deque>

namespace smtp {

class mail_transfer {
public:
    mail_transfer(dialogue &with, parcel what);

    bool is_of(const parcel &other) const { return what == other; }
    bool is_asked_for() const { return !asked.empty(); }
    outcome carry_out(const std::function<void()> &last_moment, mail_transfer *next);

private:
    enum class stage { before_the_end, asking_last_moment, saying_the_end, behind_the_end };
    enum class command { reset, mail, recipient, data };
    struct step {
        command what;
        size_t whom = 0; // of a recipient: its place in the outcome
        QByteArray line;
    };
    enum class standing { open, accepted, settled };

    // What needs no asking: what the server, by its own word, cannot carry. Whether there is anything to ask for.
    bool can_be_asked_for();
    bool sender_can_be_asked();
    void choose_recipients();
    QString why_not_carried() const; // the mail itself; "" when it can be

    // Behind the end of the mail before it. "" where it must wait for its own turn.
    QByteArray envelope_ahead();
    std::optional<answer> hear_ahead(); // what is there; gives the server's parting, and throws what cannot fit

    void talk(const std::function<void()> &last_moment, mail_transfer *next);
    void ask_envelope();
    void hear_envelope();
    std::vector<step> envelope_steps(bool afresh) const;
    QByteArray mail_line() const;
    static QByteArray lines_of(const std::vector<step> &steps);
    bool is_pointless(const step &one) const;
    void take_answer(const step &one, const answer &said);
    void take_mail_answer(const answer &said);
    void take_recipient_answer(size_t whom, const answer &said);
    void take_data_answer(const answer &said);

    void send_nothing(); // the server waits for a mail that nobody is to get
    void send_mail(const std::function<void()> &last_moment, mail_transfer *next);
    void take_last_answer(const answer &said, mail_transfer *next);
    std::optional<answer> parting_behind(mail_transfer *next);

    bool anyone(standing stands) const;
    void settle(size_t whom, fate became, const QString &words);
    void settle_all(fate became, const QString &words); // of those that are not settled
    void settle_all(const answer &said);
    void forget_answers();
    void break_off(const QString &why);
    void hang_up(const QString &why);

    dialogue &with;
    parcel what;
    letters within;
    envelope_address sender;
    std::vector<envelope_address> addresses;
    std::vector<standing> stands;
    outcome result;
    std::vector<step> asked;  // in one write; ahead of its turn, or the last time
    std::deque<answer> heard; // the first answers to what was asked ahead
    bool is_prepared = false, can_be_sent = false;
    stage at = stage::before_the_end;
    qint64 end_has_left_at = 0; // by what the conversation has said
    bool mail_refused = false, data_open = false;
};

}
