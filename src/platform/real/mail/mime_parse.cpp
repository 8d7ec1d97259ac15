#include "platform/real/mail/mime_parse.h"
#include "platform/real/mail/encoded_words.h"
#include "platform/real/mail/mail_address.h"

namespace mime {

namespace {

constexpr qsizetype longest_message_id = 250;
constexpr qsizetype most_references = 10; // the newest; no mail program needs more to thread

bool fits_in_message_id(char letter)
{
    return letter > ' ' && letter < 0x7F && letter != '<' && letter != '>';
}

// The ids in angle brackets; what is broken or far too long is left out.
QStringList message_ids_in(const QByteArray &field)
{
    QStringList ids;
    for (qsizetype open = field.indexOf('<'); open >= 0; open = field.indexOf('<', open + 1)) {
        qsizetype end = open + 1;
        while (end < field.size() && fits_in_message_id(field[end]))
            ++end;
        const bool closed = end < field.size() && field[end] == '>';
        if (closed && end > open + 1 && end - open < longest_message_id)
            ids.append(QString::fromLatin1(field.sliced(open, end + 1 - open)));
    }
    return ids;
}

}

QString without_outer_blanks(const QString &text)
{
    qsizetype from = 0, end = text.size();
    while (from < end && text[from] == u' ')
        ++from;
    while (end > from && text[end - 1] == u' ')
        --end;
    return text.sliced(from, end - from);
}

QStringList to_addresses(const header_block &head)
{
    return mail::addresses_in(head.to);
}

QString to_line(const header_block &head)
{
    return to_addresses(head).join(QStringLiteral("; "));
}

QString subject_of(const header_block &head)
{
    QString subject = decode_header_text(head.subject);
    for (QChar &letter : subject)
        if (letter == u'\r' || letter == u'\n' || letter == u'\t')
            letter = u' ';
    return without_outer_blanks(subject);
}

QString answer_address(const header_block &head)
{
    const QStringList reply_to = mail::addresses_in(head.reply_to);
    if (!reply_to.isEmpty() && mail::why_not_writable(reply_to.first()).isEmpty())
        return reply_to.first();
    const QStringList from = mail::addresses_in(head.from);
    return from.isEmpty() ? QString() : from.first();
}

QString message_id_of(const header_block &head)
{
    const QStringList ids = message_ids_in(head.message_id);
    return ids.isEmpty() ? QString() : ids.first();
}

QString references_of_answer(const header_block &head)
{
    QStringList ids = message_ids_in(head.references);
    if (ids.isEmpty())
        ids = message_ids_in(head.in_reply_to).mid(0, 1);
    const QString own = message_id_of(head);
    if (!own.isEmpty())
        ids.append(own);
    return ids.mid(qMax<qsizetype>(0, ids.size() - most_references)).join(u' ');
}

}
