#include "platform/real/mail_session/pop3_listing.h"
#include <QCryptographicHash>
#include <QHash>
#include <QSet>

namespace pop3 {

namespace {

constexpr qsizetype longest_id = 200;

QByteArray hash_of(char kind, const QByteArray &bytes)
{
    return kind + QCryptographicHash::hash(bytes, QCryptographicHash::Sha256);
}

// A mark in front keeps ids and hashes apart.
QByteArray key_of_id(QByteArrayView id)
{
    if (id.isEmpty())
        return {};
    return id.size() > longest_id ? hash_of('l', id.toByteArray()) : 'u' + id.toByteArray();
}

bool read_line(QByteArrayView line, listed_mail &mail, bool with_ids)
{
    const qsizetype blank = line.indexOf(' ');
    bool is_number = false;
    mail.number = (blank < 0 ? line : line.first(blank)).toByteArray().toInt(&is_number);
    if (!is_number || mail.number <= 0)
        return false;
    mail.key = with_ids && blank >= 0 ? key_of_id(line.sliced(blank + 1).trimmed()) : QByteArray();
    return true;
}

}

std::vector<listed_mail> listing_in(const QByteArray &lines, bool with_ids)
{
    std::vector<listed_mail> mails;
    QSet<int> numbers;
    QHash<QByteArray, int> times;
    for (qsizetype at = 0, end = 0; at < lines.size() && int(mails.size()) < most_mails; at = end + 1) {
        end = lines.indexOf('\n', at);
        if (end < 0)
            end = lines.size();
        listed_mail mail;
        if (!read_line(QByteArrayView(lines).sliced(at, end - at), mail, with_ids) || numbers.contains(mail.number))
            continue;
        numbers.insert(mail.number);
        if (!mail.key.isEmpty())
            ++times[mail.key];
        mails.push_back(std::move(mail));
    }
    for (listed_mail &mail : mails)
        if (times.value(mail.key) > 1)
            mail.key.clear();
    return mails;
}

QByteArray key_of_header(const QByteArray &header)
{
    return hash_of('h', header);
}

}
