#include "platform/real/mail_session/pop3_dialogue.h"

namespace pop3 {

namespace {

constexpr int parting_ms = 1000;
constexpr qsizetype most_at_once = 100; // their commands fit into what any server buffers

}

dialogue::dialogue(const net::place &where, const net::patience &how_long)
    : name(net::name_of(where)), patience(how_long), line(where, how_long)
{
    if (line.has_waiting(0)) // it would be taken for the answer to our first command
        throw net::failure(net::trouble::not_understood, name + QStringLiteral(" speaks without being asked."));
}

answer dialogue::hear(form wanted, qsizetype keep)
{
    while (true) {
        std::optional<answer> said = reader.next(wanted, keep);
        if (said && said->said == fate::not_understood)
            throw net::failure(
                net::trouble::not_understood,
                QStringLiteral("%1 said what does not fit what it was asked: %2").arg(name, words_for_user(*said)));
        if (said)
            return std::move(*said);
        const qsizetype count = line.receive(buffer.data(), qsizetype(buffer.size()));
        reader.add(QByteArrayView(buffer.data(), count));
    }
}

answer dialogue::ask(const QByteArray &command, form wanted, qsizetype keep)
{
    say(command + "\r\n");
    return hear(wanted, keep);
}

bool dialogue::can_pipeline()
{
    if (!pipelining) {
        const answer said = ask("CAPA", form::many_lines);
        pipelining = said.said == fate::yes && ('\n' + said.lines.toUpper()).contains("\nPIPELINING\n");
    }
    return *pipelining;
}

void dialogue::ask_all(const QByteArrayList &commands, qsizetype keep,
                       const std::function<void(qsizetype, answer)> &take)
{
    const qsizetype at_once = commands.size() > 1 && can_pipeline() ? most_at_once : 1;
    for (qsizetype from = 0; from < commands.size(); from += at_once) {
        const QByteArrayList some = commands.mid(from, at_once);
        say(some.join("\r\n") + "\r\n");
        for (qsizetype index = from; index < from + some.size(); ++index)
            take(index, hear(form::many_lines, keep));
    }
}

run_time_error dialogue::refusal(const answer &said) const
{
    return net::failure(net::trouble::refused, QStringLiteral("%1 said no: %2").arg(name, words_for_user(said)));
}

void dialogue::quit()
{
    try {
        net::patience shorter = patience;
        shorter.answer_ms = qMin(parting_ms, patience.answer_ms);
        line.set_patience(shorter);
        ask("QUIT", form::one_line);
    } catch (const run_time_error &) { // a goodbye that is not answered is one as well
    }
}

}
