// The side of mail_transfer.h that asks: who sends to whom, in the mail's own turn or behind the end of the one before.
#include "platform/real/mail/mail_address.h"
#include "platform/real/smtp/mail_transfer.h"
#include <algorithm>

namespace smtp {

namespace {

// Their answers fit into what a connection buffers, whoever reads last.
constexpr size_t most_in_one_write = 100;
// Small beside the end of a mail, with which it leaves at once.
constexpr qsizetype most_ahead = 4096;

// It says nothing about this mail or that recipient, but about all mails.
bool wants_login(const answer &said)
{
    return said.code == 530 || said.code == 535 || said.code == 538;
}

}

bool mail_transfer::can_be_asked_for()
{
    if (is_prepared)
        return can_be_sent;
    is_prepared = true;
    if (!sender_can_be_asked())
        return false;
    choose_recipients();
    const QString why = why_not_carried();
    if (!why.isEmpty())
        settle_all(fate::refused, why);
    can_be_sent = why.isEmpty() && anyone(standing::open);
    return can_be_sent;
}

bool mail_transfer::sender_can_be_asked()
{
    QString why = mail::why_not_writable(what.from);
    if (why.isEmpty()) {
        sender = envelope_form(what.from);
        if (sender.needs_utf8 && !with.offered().utf8)
            why = QStringLiteral("The server does not take letters beyond ASCII in an address.");
    }
    if (why.isEmpty())
        return true;
    result.sender_refused = true;
    settle_all(fate::refused, QStringLiteral("It cannot go out as \"%1\": %2").arg(what.from, why));
    return false;
}

void mail_transfer::choose_recipients()
{
    for (size_t whom = 0; whom < result.recipients.size(); ++whom) {
        const QString &address = what.to.at(qsizetype(whom));
        const QString why = mail::why_not_writable(address);
        addresses.push_back(why.isEmpty() ? envelope_form(address) : envelope_address());
        if (!why.isEmpty())
            settle(whom, fate::refused, why);
        else if (addresses.back().needs_utf8 && !with.offered().utf8)
            settle(whom, fate::refused, QStringLiteral("The server does not take letters beyond ASCII in an address."));
    }
}

QString mail_transfer::why_not_carried() const
{
    const offers &can = with.offered();
    if (can.most_bytes > 0 && what.mail.size() > can.most_bytes)
        return QStringLiteral("The mail is too big for the server: it has %1 bytes, and the server takes %2.")
            .arg(what.mail.size())
            .arg(can.most_bytes);
    if (within.eight_bit_header && !can.utf8)
        return QStringLiteral("The mail's header holds letters beyond ASCII, and the server does not take them.");
    if (within.eight_bit_body && !can.eight_bit)
        return QStringLiteral("The mail holds letters beyond ASCII as they are, and the server does not take them.");
    return {};
}

QByteArray mail_transfer::mail_line() const
{
    bool utf8 = within.eight_bit_header || sender.needs_utf8;
    for (size_t whom = 0; whom < addresses.size(); ++whom)
        utf8 = utf8 || (stands[whom] == standing::open && addresses[whom].needs_utf8);
    QByteArray line = "MAIL FROM:<" + sender.bytes + '>';
    if (with.offered().size)
        line += " SIZE=" + QByteArray::number(what.mail.size());
    if ((within.eight_bit_body || utf8) && with.offered().eight_bit)
        line += " BODY=8BITMIME";
    if (utf8)
        line += " SMTPUTF8";
    return line + "\r\n";
}

std::vector<mail_transfer::step> mail_transfer::envelope_steps(bool afresh) const
{
    std::vector<step> steps;
    if (afresh)
        steps.push_back({command::reset, 0, "RSET\r\n"});
    steps.push_back({command::mail, 0, mail_line()});
    for (size_t whom = 0; whom < addresses.size(); ++whom)
        if (stands[whom] == standing::open)
            steps.push_back({command::recipient, whom, "RCPT TO:<" + addresses[whom].bytes + ">\r\n"});
    steps.push_back({command::data, 0, "DATA\r\n"});
    return steps;
}

QByteArray mail_transfer::lines_of(const std::vector<step> &steps)
{
    QByteArray lines;
    for (const step &one : steps)
        lines += one.line;
    return lines;
}

bool mail_transfer::is_pointless(const step &one) const
{
    if (one.what == command::data)
        return mail_refused || (!anyone(standing::accepted) && !anyone(standing::open));
    return one.what == command::recipient && mail_refused;
}

void mail_transfer::ask_envelope()
{
    const std::vector<step> steps = envelope_steps(with.needs_reset);
    const size_t at_once = with.offered().pipelining ? most_in_one_write : 1;
    for (size_t first = 0; first < steps.size(); first += at_once) {
        asked.clear();
        for (size_t i = first; i < std::min(first + at_once, steps.size()); ++i)
            if (!is_pointless(steps[i]))
                asked.push_back(steps[i]);
        if (asked.empty())
            return;
        with.say(lines_of(asked));
        with.needs_reset = true;
        hear_envelope();
    }
}

QByteArray mail_transfer::envelope_ahead()
{
    if (!with.offered().pipelining || !can_be_asked_for())
        return {};
    std::vector<step> steps = envelope_steps(false);
    const QByteArray lines = lines_of(steps);
    if (steps.size() > most_in_one_write || lines.size() > most_ahead)
        return {};
    asked = std::move(steps);
    return lines;
}

// Only counted and looked at: what it means for this mail is a matter of its own turn, and some of it throws.
std::optional<answer> mail_transfer::hear_ahead()
{
    bool mail_taken = false;
    while (heard.size() < asked.size()) {
        const std::optional<answer> said = with.hear_what_is_there();
        if (!said || said->code == 421)
            return said;
        const command of = asked[heard.size()].what;
        const bool is_yes = of == command::data ? said->code == 354 : said->is_yes();
        mail_taken = of == command::mail ? is_yes : mail_taken;
        if ((!is_yes && !said->is_no()) || (is_yes && !mail_taken))
            throw with.misfit(*said);
        heard.push_back(*said);
    }
    if (with.has_more())
        throw with.misfit(with.hear());
    return std::nullopt;
}

void mail_transfer::hear_envelope()
{
    for (const step &one : asked) {
        answer said;
        if (heard.empty()) {
            said = with.hear();
        } else {
            said = heard.front();
            heard.pop_front();
        }
        take_answer(one, said);
    }
}

void mail_transfer::take_answer(const step &one, const answer &said)
{
    if (said.code == 421)
        throw with.misfit(said);
    switch (one.what) {
    case command::reset:
        if (!said.is_yes())
            throw with.misfit(said);
        return;
    case command::mail:
        return take_mail_answer(said);
    case command::recipient:
        return take_recipient_answer(one.whom, said);
    case command::data:
        return take_data_answer(said);
    }
}

void mail_transfer::take_mail_answer(const answer &said)
{
    if (said.is_yes())
        return;
    if (!said.is_no())
        throw with.misfit(said);
    if (wants_login(said))
        throw with.login_failure(said);
    mail_refused = true;
    // A mail too big, or a form of the command that it does not know, says nothing about the address.
    result.sender_refused = said.is_no_for_good() && said.code != 552 && said.code != 555 && said.code != 503;
    settle_all(said);
}

void mail_transfer::take_recipient_answer(size_t whom, const answer &said)
{
    if (said.is_yes() && !mail_refused)
        stands[whom] = standing::accepted;
    else if (!said.is_no())
        throw with.misfit(said); // also a yes to somebody in a mail that it does not take
    else if (wants_login(said) && !mail_refused)
        throw with.login_failure(said);
    else if (!mail_refused)
        settle(whom, said.is_no_for_good() ? fate::refused : fate::later, words_of(said));
}

void mail_transfer::take_data_answer(const answer &said)
{
    if (with.has_more() || (said.code != 354 && !said.is_no()))
        throw with.misfit(said);
    if (wants_login(said) && anyone(standing::accepted))
        throw with.login_failure(said);
    data_open = said.code == 354;
    if (!data_open)
        settle_all(said); // those that it had accepted
}

}
