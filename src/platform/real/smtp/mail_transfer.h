// One mail over an open conversation: who is asked for, the bytes, and what became of each recipient.
#pragma once
#include "platform/real/smtp/dialogue.h"
#include "platform/real/smtp/smtp_session.h"
#include "platform/real/smtp/wire_form.h"

namespace smtp {

class mail_transfer {
public:
    mail_transfer(dialogue &with, QByteArrayView mail, const std::function<void()> &last_moment);

    outcome carry_out(const QString &from, const QStringList &to);

private:
    enum class stage { before_the_end, asking_last_moment, behind_the_end };
    enum class command { reset, mail, recipient, data };
    struct step {
        command what;
        size_t whom = 0; // of a recipient: its place in the outcome
        QByteArray line;
    };
    enum class standing { open, accepted, settled };

    // What needs no asking: what the server, by its own word, cannot carry.
    bool sender_can_be_asked(const QString &from);
    void choose_recipients(const QStringList &to);
    QString why_not_carried() const; // the mail itself; "" when it can be

    void talk();
    void ask_envelope();
    std::vector<step> envelope_steps() const;
    QByteArray mail_line() const;
    bool is_pointless(const step &one) const;
    void take_answer(const step &one, const answer &said);
    void take_mail_answer(const answer &said);
    void take_recipient_answer(size_t whom, const answer &said);
    void take_data_answer(const answer &said);

    void send_nothing(); // the server waits for a mail that nobody is to get
    void send_mail();
    void take_last_answer(const answer &said);

    bool anyone(standing stands) const;
    void settle(size_t whom, fate became, const QString &words);
    void settle_all(fate became, const QString &words); // of those that are not settled
    void settle_all(const answer &said);
    void break_off(const QString &why);
    void hang_up(const QString &why);

    dialogue &with;
    QByteArrayView mail;
    letters within;
    const std::function<void()> &last_moment;
    envelope_address sender;
    std::vector<envelope_address> addresses;
    std::vector<standing> stands;
    outcome result;
    stage at = stage::before_the_end;
    bool mail_refused = false, data_open = false;
};

}
