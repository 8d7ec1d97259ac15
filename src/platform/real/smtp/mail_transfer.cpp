#include "platform/real/smtp/mail_transfer.h"
#include "platform/real/mail/mail_address.h"
#include <algorithm>

namespace smtp {

namespace {

// Their answers fit into what a connection buffers, whoever reads last.
constexpr size_t most_in_one_write = 100;
// As much of a mail as leaves at once; more goes ahead of the end, so that an early answer is seen before it.
constexpr qsizetype most_behind_last_moment = 16384;

bool wants_login(const answer &said)
{
    return said.code == 530 || said.code == 535 || said.code == 538;
}

}

mail_transfer::mail_transfer(dialogue &with, QByteArrayView mail, const std::function<void()> &last_moment)
    : with(with), mail(mail), within(letters_of(mail)), last_moment(last_moment)
{
}

outcome mail_transfer::carry_out(const QString &from, const QStringList &to)
{
    for (const QString &address : to)
        result.recipients.push_back({address, fate::later, {}});
    stands.resize(result.recipients.size(), standing::open);
    if (with.is_broken()) {
        break_off(QStringLiteral("The connection to the server is broken."));
    } else if (sender_can_be_asked(from)) {
        choose_recipients(to);
        const QString why = why_not_carried();
        if (!why.isEmpty())
            settle_all(fate::refused, why);
        else if (anyone(standing::open))
            talk();
    }
    result.line_is_broken = with.is_broken();
    return result;
}

bool mail_transfer::sender_can_be_asked(const QString &from)
{
    QString why = mail::why_not_writable(from);
    if (why.isEmpty()) {
        sender = envelope_form(from);
        if (sender.needs_utf8 && !with.offered().utf8)
            why = QStringLiteral("The server does not take letters beyond ASCII in an address.");
    }
    if (why.isEmpty())
        return true;
    result.sender_refused = true;
    settle_all(fate::refused, QStringLiteral("It cannot go out as \"%1\": %2").arg(from, why));
    return false;
}

void mail_transfer::choose_recipients(const QStringList &to)
{
    for (size_t whom = 0; whom < result.recipients.size(); ++whom) {
        const QString &address = to.at(qsizetype(whom));
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
    if (can.most_bytes > 0 && mail.size() > can.most_bytes)
        return QStringLiteral("The mail is too big for the server: it has %1 bytes, and the server takes %2.")
            .arg(mail.size())
            .arg(can.most_bytes);
    if (within.eight_bit_header && !can.utf8)
        return QStringLiteral("The mail's header holds letters beyond ASCII, and the server does not take them.");
    if (within.eight_bit_body && !can.eight_bit)
        return QStringLiteral("The mail holds letters beyond ASCII as they are, and the server does not take them.");
    return {};
}

// The one place where a broken conversation becomes what it means for the mail.
void mail_transfer::talk()
{
    try {
        with.expect_silence();
        ask_envelope();
        if (data_open && anyone(standing::accepted))
            send_mail();
        else if (data_open)
            send_nothing();
    } catch (const run_time_error &error) {
        const bool broken_by_server = at != stage::asking_last_moment && net::is(error, net::trouble::closed);
        const QString said = broken_by_server ? with.parting_words() : QString();
        with.hang_up(); // a mail without its end goes nowhere
        if (at == stage::asking_last_moment || net::is(error, net::trouble::login_refused))
            throw;
        break_off(said.isEmpty() ? error.description : error.description + QStringLiteral(" It said: ") + said);
    }
}

QByteArray mail_transfer::mail_line() const
{
    bool utf8 = within.eight_bit_header || sender.needs_utf8;
    for (size_t whom = 0; whom < addresses.size(); ++whom)
        utf8 = utf8 || (stands[whom] == standing::open && addresses[whom].needs_utf8);
    QByteArray line = "MAIL FROM:<" + sender.bytes + '>';
    if (with.offered().size)
        line += " SIZE=" + QByteArray::number(mail.size());
    if ((within.eight_bit_body || utf8) && with.offered().eight_bit)
        line += " BODY=8BITMIME";
    if (utf8)
        line += " SMTPUTF8";
    return line + "\r\n";
}

std::vector<mail_transfer::step> mail_transfer::envelope_steps() const
{
    std::vector<step> steps;
    if (with.needs_reset)
        steps.push_back({command::reset, 0, "RSET\r\n"});
    steps.push_back({command::mail, 0, mail_line()});
    for (size_t whom = 0; whom < addresses.size(); ++whom)
        if (stands[whom] == standing::open)
            steps.push_back({command::recipient, whom, "RCPT TO:<" + addresses[whom].bytes + ">\r\n"});
    steps.push_back({command::data, 0, "DATA\r\n"});
    return steps;
}

bool mail_transfer::is_pointless(const step &one) const
{
    if (one.what == command::data)
        return mail_refused || (!anyone(standing::accepted) && !anyone(standing::open));
    return one.what == command::recipient && mail_refused;
}

void mail_transfer::ask_envelope()
{
    const std::vector<step> steps = envelope_steps();
    const size_t at_once = with.offered().pipelining ? most_in_one_write : 1;
    for (size_t first = 0; first < steps.size(); first += at_once) {
        const size_t end = std::min(first + at_once, steps.size());
        QByteArray lines;
        std::vector<const step *> asked;
        for (size_t i = first; i < end; ++i)
            if (!is_pointless(steps[i])) {
                lines += steps[i].line;
                asked.push_back(&steps[i]);
            }
        if (asked.empty())
            return;
        with.say(lines);
        with.needs_reset = true;
        for (const step *one : asked)
            take_answer(*one, with.hear());
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
    if (wants_login(said)) // of all mails, not of this one
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
    else if (!mail_refused)
        settle(whom, said.is_no_for_good() ? fate::refused : fate::later, words_of(said));
}

void mail_transfer::take_data_answer(const answer &said)
{
    if (with.has_more() || (said.code != 354 && !said.is_no()))
        throw with.misfit(said);
    data_open = said.code == 354;
    if (!data_open)
        settle_all(said); // those that it had accepted
}

void mail_transfer::send_nothing()
{
    with.expect_silence();
    with.say(".\r\n");
    if (!with.hear_last().is_no()) // it took a mail for nobody: what else does it take?
        hang_up(QStringLiteral("The server took a mail that was for nobody."));
}

void mail_transfer::send_mail()
{
    QByteArray bytes;
    append_stuffed(mail, bytes);
    bytes.append(".\r\n");
    const qsizetype ahead = bytes.size() > most_behind_last_moment ? bytes.size() - most_behind_last_moment : 0;
    if (ahead > 0)
        with.say(QByteArrayView(bytes).first(ahead));
    with.expect_silence();
    at = stage::asking_last_moment;
    last_moment();
    at = stage::before_the_end; // while saying fails, the end has not left
    with.say(QByteArrayView(bytes).sliced(ahead));
    at = stage::behind_the_end;
    take_last_answer(with.hear_last());
}

void mail_transfer::take_last_answer(const answer &said)
{
    answer parting = said;
    if (with.has_more() && parting.code != 421) {
        // A second word: its parting, or else nobody knows which of the two is about this mail.
        parting = with.hear();
        if (parting.code != 421)
            throw with.misfit(parting);
    }
    if (!said.is_yes() && !said.is_no())
        throw with.misfit(said);
    settle_all(said);
    with.needs_reset = false;
    if (parting.code == 421)
        hang_up(with.misfit(parting).description);
}

bool mail_transfer::anyone(standing which) const
{
    return std::find(stands.begin(), stands.end(), which) != stands.end();
}

void mail_transfer::settle(size_t whom, fate became, const QString &words)
{
    stands[whom] = standing::settled;
    result.recipients[whom].became = became;
    result.recipients[whom].words = words;
}

void mail_transfer::settle_all(fate became, const QString &words)
{
    for (size_t whom = 0; whom < stands.size(); ++whom)
        if (stands[whom] != standing::settled)
            settle(whom, became, words);
}

void mail_transfer::settle_all(const answer &said)
{
    const fate became = said.is_yes() ? fate::sent : said.is_no_for_good() ? fate::refused : fate::later;
    settle_all(became, words_of(said));
}

void mail_transfer::break_off(const QString &why)
{
    settle_all(at == stage::behind_the_end ? fate::unknown : fate::later, why);
    result.why_broken = why;
}

void mail_transfer::hang_up(const QString &why)
{
    with.hang_up();
    result.why_broken = why;
}

}
