#include "platform/real/mail_session/mbox_mailbox.h"
#include "platform/real/mail/mail_file.h"
#include "platform/real/mail/mime_body.h"
#include "platform/real/mail_session/from_line.h"

namespace mbox {

namespace {

constexpr qint64 first_read = 8 * 1024;
constexpr qint64 longest_header = 1024 * 1024;

std::shared_ptr<const index> up_to_date_index(const file &mails, memory &remembered)
{
    const shared_lock lock(mails);
    const bool known = remembered.last && remembered.path == mails.path && remembered.last->state == mails.state();
    if (known && !remembered.last->left_out_last)
        return remembered.last;
    remembered.path = mails.path;
    remembered.last = std::make_shared<const index>(index_of(mails));
    ++remembered.walks;
    return remembered.last;
}

// Between two mails stands an empty line that belongs to neither.
void drop_dividing_line(QByteArray &mail)
{
    if (mail.endsWith("\r\n\r\n"))
        mail.chop(2);
    else if (mail.endsWith("\n\n"))
        mail.chop(1);
}

// One ">" goes from each line that begins with some of them and "From ", which its writer put there.
QByteArray without_marks(const QByteArray &mail)
{
    if (!mail.contains("\n>"))
        return mail;
    QByteArray clean;
    clean.reserve(mail.size());
    qsizetype from = 0;
    for (qsizetype at = mail.indexOf("\n>"); at >= 0; at = mail.indexOf("\n>", at + 1)) {
        qsizetype end = at + 1;
        while (end < mail.size() && mail[end] == '>')
            ++end;
        if (QByteArrayView(mail).sliced(end).startsWith("From ")) {
            clean.append(QByteArrayView(mail).sliced(from, at + 1 - from));
            from = at + 2;
        }
    }
    return clean.append(QByteArrayView(mail).sliced(from));
}

}

mailbox::mailbox(const QString &path, const net::patience &patience, memory &remembered)
    : mails(path, patience), places(up_to_date_index(mails, remembered))
{
}

// The file of before lies there still, and what was appended meanwhile stands behind.
void mailbox::expect_unchanged(const mail_place &mail) const
{
    const file_state state = mails.state();
    if (state == places->state)
        return;
    const bool is_there = state.size >= places->state.size &&
                          print_of(mails.read(mail.at, qMin(print_size, places->state.size - mail.at))) == mail.print;
    const qint64 end = mail.at + mail.size;
    if (!is_there || (end < state.size && mails.read(end, 5) != "From "))
        throw run_time_error{57, QStringLiteral("Device I/O error: another program has changed ") + mails.path +
                                     QStringLiteral(" while it was read. The next fetch reads it anew.")};
}

QByteArray mailbox::bytes_of(int index, qint64 most)
{
    const mail_place &mail = places->mails.at(size_t(index));
    const shared_lock lock(mails);
    expect_unchanged(mail);
    QByteArray bytes = mails.read(mail.at, qMin(mail.size, most));
    const qsizetype end = bytes.indexOf('\n');
    from_line = end < 0 ? bytes : bytes.first(end).trimmed();
    return end < 0 ? QByteArray() : bytes.sliced(end + 1);
}

template <typename Read>
auto mailbox::reading_whole_file(Read read)
{
    if (broken)
        throw *broken;
    try {
        return read();
    } catch (const run_time_error &failure) {
        broken = std::make_unique<run_time_error>(failure);
        throw;
    }
}

reading::mail_facts mailbox::facts(int index)
{
    return reading_whole_file([&] {
        mime::header_block head = mime::read_header_block(bytes_of(index, first_read));
        if (!head.complete && places->mails.at(size_t(index)).size > first_read)
            head = mime::read_header_block(bytes_of(index, longest_header));
        reading::mail_facts facts = reading::facts_in(head);
        const QDateTime written = date_of_from_line(from_line);
        if (written.isValid())
            facts.received = written;
        if (!facts.received.isValid()) // the same at every fetch, else the mail would be stored again and again
            facts.received = QDateTime(QDate(1970, 1, 1), QTime(0, 0), Qt::UTC);
        return facts;
    });
}

QString mailbox::text(int index)
{
    return reading_whole_file([&] {
        QByteArray bytes = bytes_of(index, maildir::longest_mail);
        drop_dividing_line(bytes);
        bytes = without_marks(bytes);
        return mime::body_text(bytes, mime::read_header_block(bytes));
    });
}

}
