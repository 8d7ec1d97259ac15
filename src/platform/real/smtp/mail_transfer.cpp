#include "platform/real/smtp/mail_transfer.h"
#include <algorithm>

namespace smtp {

namespace {

// As much of a mail as leaves at once; more goes ahead of the end, so that an early answer is seen before it.
constexpr qsizetype most_behind_last_moment = 16384;

}

mail_transfer::mail_transfer(dialogue &with, parcel what)
    : with(with), what(std::move(what)), within(letters_of(this->what.mail))
{
    for (const QString &address : this->what.to)
        result.recipients.push_back({address, fate::later, {}});
    stands.resize(result.recipients.size(), standing::open);
}

outcome mail_transfer::carry_out(const std::function<void()> &last_moment, mail_transfer *next)
{
    if (with.is_broken())
        break_off(QStringLiteral("The connection to the server is broken."));
    else if (can_be_asked_for())
        talk(last_moment, next);
    result.line_is_broken = with.is_broken();
    return result;
}

// The one place where a broken conversation becomes what it means for the mail.
void mail_transfer::talk(const std::function<void()> &last_moment, mail_transfer *next)
{
    const bool was_asked_ahead = is_asked_for();
    try {
        if (was_asked_ahead) {
            hear_envelope();
        } else {
            with.expect_silence();
            ask_envelope();
        }
        if (data_open && anyone(standing::accepted))
            send_mail(last_moment, next);
        else if (data_open)
            send_nothing();
    } catch (const run_time_error &error) {
        if (at == stage::saying_the_end)
            at = with.said() < end_has_left_at ? stage::before_the_end : stage::behind_the_end;
        const bool broken_by_server = at != stage::asking_last_moment && net::is(error, net::trouble::closed);
        const QString said = broken_by_server ? with.parting_words() : QString();
        with.hang_up(); // a mail without its end goes nowhere
        if (at == stage::asking_last_moment || net::is(error, net::trouble::login_refused))
            throw;
        if (was_asked_ahead && at == stage::before_the_end && net::is(error, net::trouble::not_understood))
            forget_answers(); // some may have been about the mail before this one
        break_off(said.isEmpty() ? error.description : error.description + QStringLiteral(" It said: ") + said);
    }
}

void mail_transfer::send_nothing()
{
    with.expect_silence();
    with.say(".\r\n");
    if (!with.hear_last().is_no()) // it took a mail for nobody: what else does it take?
        hang_up(QStringLiteral("The server took a mail that was for nobody."));
}

void mail_transfer::send_mail(const std::function<void()> &last_moment, mail_transfer *next)
{
    QByteArray bytes;
    append_stuffed(what.mail, bytes);
    bytes.append(".\r\n");
    const qsizetype end = bytes.size();
    if (next)
        bytes.append(next->envelope_ahead());
    const qsizetype early = bytes.size() > most_behind_last_moment ? bytes.size() - most_behind_last_moment : 0;
    if (early > 0)
        with.say(QByteArrayView(bytes).first(early));
    with.expect_silence();
    at = stage::asking_last_moment;
    last_moment();
    at = stage::saying_the_end;
    end_has_left_at = with.said() + end - early;
    with.say(QByteArrayView(bytes).sliced(early));
    at = stage::behind_the_end;
    take_last_answer(with.hear_last(), next);
}

void mail_transfer::take_last_answer(const answer &said, mail_transfer *next)
{
    if (!said.is_yes() && !said.is_no())
        throw with.misfit(said);
    const std::optional<answer> parting = said.code == 421 ? said : parting_behind(next);
    settle_all(said);
    with.needs_reset = next && next->is_asked_for();
    if (parting)
        hang_up(with.misfit(*parting).description);
}

// A second word is the server's parting, or else nobody knows which of the two is about this mail.
std::optional<answer> mail_transfer::parting_behind(mail_transfer *next)
{
    if (next && next->is_asked_for())
        return next->hear_ahead();
    if (!with.has_more())
        return std::nullopt;
    const answer parting = with.hear();
    if (parting.code != 421)
        throw with.misfit(parting);
    return parting;
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

void mail_transfer::forget_answers()
{
    for (const step &one : asked)
        if (one.what == command::recipient)
            stands[one.whom] = standing::open;
    result.sender_refused = false;
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
