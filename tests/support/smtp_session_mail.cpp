// What a session makes of one mail: its envelope, its text, and whether it is taken.
#include "support/smtp_session.h"

#include <QRegularExpression>
#include <algorithm>

namespace {

bool has_eight_bits(const QByteArray &text)
{
    return std::any_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) > 127; });
}

// "FROM:<a@b> SIZE=3" without its first word; nothing when it is not of that form.
std::optional<QByteArrayList> address_and_parameters(const QByteArray &words, const QByteArray &first)
{
    const qsizetype end = words.indexOf('>');
    if (words.left(first.size()).toUpper() != first || words.mid(first.size(), 1) != "<" || end < 0)
        return std::nullopt;
    QByteArrayList found{words.mid(first.size() + 1, end - first.size() - 1)};
    for (const QByteArray &each : words.mid(end + 1).split(' '))
        if (!each.isEmpty())
            found += each;
    return found;
}

qint64 announced_size(const QByteArrayList &parameters)
{
    for (const QByteArray &each : parameters)
        if (each.startsWith("SIZE="))
            return each.mid(5).toLongLong();
    return 0;
}

}

std::optional<QByteArray> smtp_session::refused(const QByteArray &address, bool sender) const
{
    for (const smtp_refusal &each : options.refusals) {
        const auto pattern = QRegularExpression::fromWildcard(each.pattern, Qt::CaseInsensitive);
        if (each.sender == sender && pattern.match(QString::fromUtf8(address)).hasMatch())
            return each.reply;
    }
    return std::nullopt;
}

void smtp_session::mail(const QByteArray &words)
{
    if (struck(smtp_step::mail))
        return;
    const auto found = address_and_parameters(words, "FROM:");
    if (!options.user.isEmpty() && !logged_in)
        return answer("530 5.7.0 Log in first");
    if (!found)
        return answer("501 5.5.4 MAIL FROM:<address>");
    if (const auto reply = refused(found->first(), true))
        return answer(*reply);
    if (options.size > 0 && announced_size(*found) > options.size)
        return answer("552 5.3.4 Too big");
    if (has_eight_bits(words) && !(options.utf8 && found->contains("SMTPUTF8")))
        return answer("553 5.6.7 Not without SMTPUTF8");
    current = {found->first(), found->mid(1), {}, {}};
    mail_open = true;
    answer("250 2.1.0 Sender noted");
}

void smtp_session::rcpt(const QByteArray &words)
{
    if (struck(smtp_step::rcpt))
        return;
    const auto found = address_and_parameters(words, "TO:");
    if (!mail_open)
        return answer("503 5.5.1 MAIL first");
    if (!found || found->first().isEmpty())
        return answer("501 5.5.4 RCPT TO:<address>");
    if (const auto reply = refused(found->first(), false))
        return answer(*reply);
    if (has_eight_bits(words) && !current.parameters.contains("SMTPUTF8"))
        return answer("553 5.6.7 Not without SMTPUTF8");
    current.recipients += found->first();
    answer("250 2.1.5 Recipient noted");
}

void smtp_session::data()
{
    if (struck(smtp_step::data))
        return;
    if (!mail_open || current.recipients.isEmpty())
        return answer("554 5.5.1 No recipients");
    answer("354 Go on, end with a dot");
    mail_open = false;
    if (!read_body(current.bytes) || struck(smtp_step::final))
        return;
    if (options.size > 0 && current.bytes.size() > options.size)
        return answer("552 5.3.4 Too big");
    judge_body(current.bytes);
    int number = 0;
    {
        const std::lock_guard lock(shared.in_use);
        shared.recorder.record(current);
        number = shared.recorder.taken();
    }
    if (!struck(smtp_step::recorded))
        answer("250 2.0.0 Taken as " + QByteArray::number(number));
}

bool smtp_session::read_body(QByteArray &bytes)
{
    QByteArray &in = line.received;
    for (qsizetype looked = 0;;) {
        if (struck(smtp_step::body, in.size()))
            return false;
        const qsizetype end = in.startsWith(".\r\n") ? 0 : in.indexOf("\r\n.\r\n", looked);
        if (end >= 0) {
            bytes = end == 0 && in.startsWith('.') ? QByteArray() : in.left(end + 2);
            in.remove(0, bytes.size() + 3);
            break;
        }
        looked = std::max<qsizetype>(0, in.size() - 4);
        if (!line.read_more()) {
            over = polite = true;
            return false;
        }
    }
    if (bytes.startsWith('.'))
        bytes.remove(0, 1);
    bytes.replace("\r\n.", "\r\n");
    return true;
}

void smtp_session::judge_body(const QByteArray &bytes)
{
    if (bytes.count('\n') != bytes.count("\r\n") || bytes.count('\r') != bytes.count("\r\n"))
        shared.complain("a line end that is not CRLF");
    const QByteArrayList lines = bytes.split('\n');
    if (std::any_of(lines.begin(), lines.end(), [](const QByteArray &each) { return each.size() > 999; }))
        shared.complain("a line of more than 998 bytes"); // and its CR
    if (has_eight_bits(bytes) && !(options.eight_bit && current.parameters.contains("BODY=8BITMIME")) &&
        !current.parameters.contains("SMTPUTF8"))
        shared.complain("eight bits unasked");
}
