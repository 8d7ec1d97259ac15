#include "platform/real/imap/fetched.h"
#include "platform/network.h"
#include <QDate>
#include <array>

namespace imap {

namespace {

constexpr std::array<const char *, 12> months{"JAN", "FEB", "MAR", "APR", "MAY", "JUN",
                                              "JUL", "AUG", "SEP", "OCT", "NOV", "DEC"};
constexpr qint64 julian_day_of_1970 = 2440588;
constexpr int latest_year = 9999; // that the store's dates know

std::optional<int> digits(QByteArrayView text)
{
    int value = 0;
    for (const char digit : text) {
        if (digit < '0' || digit > '9')
            return std::nullopt;
        value = value * 10 + (digit - '0');
    }
    return text.isEmpty() ? std::nullopt : std::optional(value);
}

std::optional<int> month_named(QByteArrayView name)
{
    for (size_t index = 0; index < months.size(); ++index)
        if (is(name, months[index]))
            return int(index) + 1;
    return std::nullopt;
}

// "-0700" as seconds.
std::optional<int> zone_in(QByteArrayView text)
{
    if (text.size() != 5 || (text[0] != '+' && text[0] != '-'))
        return std::nullopt;
    const auto hours = digits(text.sliced(1, 2)), minutes = digits(text.sliced(3, 2));
    if (!hours || !minutes)
        return std::nullopt;
    return (text[0] == '-' ? -60 : 60) * (*hours * 60 + *minutes);
}

}

std::optional<qint64> moment_in(QByteArrayView text)
{
    text = text.trimmed();
    const qsizetype dash = text.indexOf('-');
    if (dash < 1 || dash > 2 || text.size() != dash + 24)
        return std::nullopt;
    const auto day = digits(text.first(dash)), month = month_named(text.sliced(dash + 1, 3));
    const auto year = digits(text.sliced(dash + 5, 4));
    const auto hours = digits(text.sliced(dash + 10, 2)), minutes = digits(text.sliced(dash + 13, 2)),
               seconds = digits(text.sliced(dash + 16, 2)), zone = zone_in(text.sliced(dash + 19, 5));
    if (!day || !month || !year || !hours || !minutes || !seconds || !zone || *year > latest_year)
        return std::nullopt;
    const QDate date(*year, *month, *day);
    if (!date.isValid() || *hours > 23 || *minutes > 59 || *seconds > 60)
        return std::nullopt;
    return (date.toJulianDay() - julian_day_of_1970) * 86400 + *hours * 3600 + *minutes * 60 + *seconds - *zone;
}

fetched_mail read_fetched(const response &from, const answer &fetch)
{
    fetched_mail mail;
    words items(from, fetch.rest_at);
    bool closed = !items.opens();
    while (!closed && !items.at_end()) {
        closed = items.closes();
        if (closed)
            break;
        const QByteArrayView name = items.atom();
        if (is(name, "UID")) {
            const quint64 uid = items.number().value_or(0);
            mail.uid = uid <= 0xFFFFFFFF ? quint32(uid) : 0;
        } else if (is(name, "INTERNALDATE")) {
            mail.moment = moment_in(items.text().value_or(QByteArrayView()));
        } else if (is(name, "RFC822.SIZE")) {
            mail.size = items.number();
        } else if (name.size() > 12 && is(name.first(12), "BODY[HEADER.")) {
            mail.head = items.text();
        } else if (name.size() >= 6 && is(name.first(6), "BODY[]")) {
            mail.body = items.text();
        } else {
            items.skip();
        }
    }
    if (!closed || !items.at_end())
        throw net::failure(net::trouble::not_understood,
                           QStringLiteral("The mail server does not answer like an IMAP server."));
    mail.unescaped = items.take_unescaped();
    return mail;
}

std::vector<uid_range> searched_uids(const response &from, const answer &said)
{
    words line(from, said.rest_at);
    if (is(said.name, "SEARCH")) {
        QByteArray set = line.rest().toByteArray();
        return ranges_in(set.trimmed().replace(' ', ','));
    }
    if (line.opens())
        while (!line.at_end() && !line.closes())
            line.skip();
    while (!line.at_end()) {
        const QByteArrayView word = line.atom();
        if (is(word, "ALL"))
            return ranges_in(line.atom());
        if (word.isEmpty())
            line.skip();
    }
    return {};
}

}
