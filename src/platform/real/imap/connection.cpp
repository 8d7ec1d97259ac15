#include "platform/real/imap/connection.h"
#include <algorithm>

namespace imap {

namespace {

constexpr qint64 talk_before_cancel_ms = 200;
constexpr qint64 literal_of_use = 64 * 1024;

QByteArrayView capabilities_in(QByteArrayView line)
{
    const qsizetype at = line.indexOf("CAPABILITY ");
    if (at < 0)
        return {};
    const QByteArrayView list = line.sliced(at + 11);
    const qsizetype end = list.indexOf(']');
    return end < 0 ? list : list.first(end);
}

// Only what was said with or right before the answer to the login counts; what was said earlier holds no longer.
QByteArrayView capabilities_of_login(const QByteArrayList &lines)
{
    for (qsizetype at = lines.size() - 1; at >= 0; --at) {
        const bool is_last = at == lines.size() - 1;
        if (!is_last && !lines[at].startsWith("* "))
            return {};
        if (const QByteArrayView list = capabilities_in(lines[at]); !list.isEmpty())
            return list;
    }
    return {};
}

}

connection::connection(const net::place &to, hears unasked)
    : where(to),
      stream(to, net::present_patience()),
      reader([this](char *buffer, qsizetype size) { return receive(buffer, size); }),
      surprises(std::move(unasked))
{
    if (!where.server.user.isEmpty())
        take_capabilities(capabilities_of_login(stream.server_lines()));
}

void connection::take_capabilities(QByteArrayView list)
{
    capabilities = ' ' + list.trimmed().toByteArray().toUpper() + ' ';
    if (capabilities.size() <= 2)
        capabilities.clear();
}

bool connection::can(QByteArrayView capability) const
{
    return capabilities.contains(' ' + capability.toByteArray() + ' ');
}

void connection::ask(const QByteArray &text, hears meanwhile, ends done)
{
    const QByteArray tag = 't' + QByteArray::number(++last_tag);
    if (under_way.empty())
        note_use();
    outgoing += tag + ' ' + text + "\r\n";
    under_way.push_back({tag, std::move(meanwhile), std::move(done)});
}

void connection::flush()
{
    if (outgoing.isEmpty())
        return;
    good = false;
    stream.set_patience(net::present_patience());
    stream.send(std::exchange(outgoing, {}));
    good = true;
}

void connection::note_use()
{
    useless_ns = literals_of_use = 0;
    listening.restart();
}

// Who waits for a silent server may cancel, and waits so long only; a talkative one gets no more.
void connection::end_useless_talk() const
{
    const net::patience &patience = net::present_patience();
    const qint64 useless_ms = (useless_ns + listening.nsecsElapsed()) / 1'000'000;
    if (useless_ms > talk_before_cancel_ms && patience.give_up && patience.give_up())
        throw net::failure(net::trouble::cancelled, QStringLiteral("Cancelled."));
    if (useless_ms > patience.answer_ms)
        throw net::failure(net::trouble::timed_out,
                           net::name_of(where) + QStringLiteral(" does not come to an end with its answer."));
}

qsizetype connection::receive(char *buffer, qsizetype size)
{
    end_useless_talk();
    stream.set_patience(net::present_patience());
    const qint64 of_literal = reader.literal_to_come();
    const qsizetype come = stream.receive(buffer, size);
    literal_bytes += qMin<qint64>(come, of_literal);
    if (literal_bytes >= literal_of_use && literals_of_use < most_announced_bytes) { // a big mail on a slow line
        literals_of_use += std::exchange(literal_bytes, 0);
        useless_ns = 0;
        listening.restart();
    }
    return come;
}

void connection::listen()
{
    flush();
    good = false;
    literal_bytes = 0;
    listening.start();
    try {
        const response next = reader.next();
        good = true;
        hear(next);
        useless_ns += listening.nsecsElapsed();
    } catch (const run_time_error &failure) { // the server may have said why it hung up
        const bool was_whole = std::exchange(good, false);
        if (was_whole || farewell.isEmpty() || !net::is(failure, net::trouble::closed))
            throw;
        throw run_time_error{failure.number, failure.description + QStringLiteral(" It said: ") + farewell};
    }
}

void connection::finish()
{
    while (is_busy())
        listen();
}

void connection::note_status(const answer &said)
{
    if (is(said.code, "CAPABILITY"))
        take_capabilities(said.details);
    if (said.said == status::bye)
        farewell = plain_words(said.human);
}

void connection::hear(const response &from)
{
    const answer said = read_answer(from);
    if (said.kind == answer_kind::continuation)
        return;
    note_status(said);
    if (said.kind == answer_kind::named && is(said.name, "CAPABILITY"))
        take_capabilities(from.bytes.sliced(said.rest_at));
    if (said.kind != answer_kind::tagged) {
        if (!surprises(from, said) && std::any_of(under_way.begin(), under_way.end(), [&](command &each) {
                return each.meanwhile && each.meanwhile(from, said);
            }))
            note_use();
        return;
    }
    if (said.said == status::none && !from.bytes.isEmpty())
        throw net::failure(net::trouble::not_understood,
                           net::name_of(where) + QStringLiteral(" does not answer like an IMAP server."));
    const auto its =
        std::find_if(under_way.begin(), under_way.end(), [&](const command &each) { return each.tag == said.tag; });
    if (its == under_way.end())
        return;
    const ends done = std::move(its->done);
    under_way.erase(its);
    note_use();
    surprises(from, said); // its code may tell something of the folder
    if (done)
        done(said);
}

run_time_error connection::refusal(const answer &said) const
{
    const QString words = plain_words(said.human);
    const QString sentence = QStringLiteral("%1 refused a command.").arg(net::name_of(where));
    return net::failure(net::trouble::refused,
                        words.isEmpty() ? sentence : sentence + QStringLiteral(" It said: ") + words);
}

}
