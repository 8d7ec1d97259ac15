#include "platform/real/smtp/dialogue.h"
#include <QElapsedTimer>

namespace smtp {

namespace {

constexpr int patience_for_last = 4; // times the usual
constexpr int parting_ms = 1000;
constexpr int before_giving_up_ms = 3000;

}

dialogue::dialogue(const net::place &where, const net::patience &how_long)
    : name(net::name_of(where)), patience(how_long), line(std::make_unique<net::stream>(where, how_long))
{
    expect_silence();
    say("EHLO " + net::own_smtp_name().toLatin1() + "\r\n");
    const answer said = hear();
    if (said.code / 100 == 3 || said.code / 100 == 4 || has_more())
        throw misfit(said);
    can = offers_in(said); // an old server that says no to EHLO offers nothing
}

void dialogue::fill()
{
    const qsizetype count = line->receive(buffer.data(), qsizetype(buffer.size()));
    reader.add(QByteArrayView(buffer.data(), count));
}

answer dialogue::hear()
{
    while (true) {
        if (const std::optional<answer> said = hear_what_is_there())
            return *said;
        fill();
    }
}

std::optional<answer> dialogue::hear_what_is_there()
{
    const std::optional<answer> said = reader.next();
    if (said && said->code == 0)
        throw misfit(*said);
    return said;
}

answer dialogue::hear_last()
{
    net::patience longer = patience;
    longer.answer_ms *= patience_for_last;
    // Whoever gives up now does not know what became of the mail: most words come within this time.
    QElapsedTimer since;
    since.start();
    longer.give_up = [this, since] {
        return since.hasExpired(before_giving_up_ms) && patience.give_up && patience.give_up();
    };
    line->set_patience(longer);
    const answer said = hear();
    line->set_patience(patience);
    return said;
}

void dialogue::expect_silence()
{
    if (reader.is_empty() && !line->has_waiting(0))
        return;
    throw misfit(hear());
}

run_time_error dialogue::misfit(const answer &said) const
{
    if (said.code == 421)
        return net::failure(net::trouble::closed,
                            QStringLiteral("%1 ended the conversation. It said: %2").arg(name, words_of(said)));
    return net::failure(net::trouble::not_understood,
                        QStringLiteral("%1 said what does not fit what it was asked: %2").arg(name, words_of(said)));
}

run_time_error dialogue::login_failure(const answer &said) const
{
    return net::failure(net::trouble::login_refused,
                        QStringLiteral("%1 takes no mail without a login. It said: %2").arg(name, words_of(said)));
}

QString dialogue::parting_words()
{
    try {
        while (line && line->has_waiting(0))
            fill();
    } catch (const run_time_error &) { // the line is broken, that is known; what came before is wanted
    }
    const std::optional<answer> said = reader.next();
    return said ? words_of(*said) : QString();
}

void dialogue::quit()
{
    if (is_broken())
        return;
    try {
        net::patience shorter = patience;
        shorter.answer_ms = qMin(parting_ms, patience.answer_ms);
        line->set_patience(shorter);
        say("QUIT\r\n");
        hear();
    } catch (const run_time_error &) { // a goodbye that is not answered is one as well
    }
    hang_up();
}

}
