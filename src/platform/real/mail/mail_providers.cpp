#include "platform/mail_providers.h"
#include "platform/app_folder.h"
#include <QFile>
#include <QUrl>
#include <algorithm>
#include <array>

namespace mail {

namespace {

constexpr qsizetype columns = 7;
constexpr qsizetype longest_domain = 253;
constexpr qsizetype longest_label = 63;
constexpr qsizetype longest_list = 1024 * 1024;

struct address_parts {
    QString whole, local, domain; // the domain as name servers know it: ASCII, lower case
};

bool is_label(const QString &label)
{
    return !label.isEmpty() && label.size() <= longest_label && !label.startsWith(u'-') && !label.endsWith(u'-') &&
           std::all_of(label.begin(), label.end(), [](QChar letter) {
               return (letter >= u'a' && letter <= u'z') || (letter >= u'0' && letter <= u'9') || letter == u'-';
           });
}

bool is_domain(const QString &domain)
{
    const QStringList labels = domain.split(u'.');
    const bool is_number = std::all_of(labels.last().begin(), labels.last().end(),
                                       [](QChar letter) { return letter >= u'0' && letter <= u'9'; });
    return domain.size() <= longest_domain && labels.size() > 1 && !is_number &&
           std::all_of(labels.begin(), labels.end(), is_label);
}

bool is_local_part(const QString &local)
{
    return !local.isEmpty() && std::none_of(local.begin(), local.end(), [](QChar letter) {
        return letter.isSpace() || letter.category() == QChar::Other_Control || letter == u'@';
    });
}

address_parts parts_of(const QString &address)
{
    const QString whole = address.trimmed();
    const qsizetype at = whole.lastIndexOf(u'@');
    if (at < 1 || whole.size() > 2 * longest_domain)
        return {};
    const QString domain = QString::fromLatin1(QUrl::toAce(whole.sliced(at + 1))).toLower();
    const QString local = whole.first(at);
    return is_local_part(local) && is_domain(domain) ? address_parts{whole, local, domain} : address_parts{};
}

// "imap.example.org 993 tls"; an empty host where the list says nothing.
server listed_server(const QString &column, const QString &user)
{
    const QStringList words = column.split(u' ', Qt::SkipEmptyParts);
    if (words.size() != 3 || (words[2] != u"tls" && words[2] != u"starttls"))
        return {};
    return {words[0], words[1].toInt(), words[2] == u"tls" ? security::tls : security::starttls, user};
}

void add_listed(std::vector<server_guess> &guesses, const QString &column, const QString &user)
{
    const server place = listed_server(column, user);
    if (!place.host.isEmpty())
        guesses.push_back({place, true});
}

address_guess from_list(const address_parts &address)
{
    address_guess guess;
    QFile list(app_path(u"\\mail_providers.tsv"));
    if (!list.open(QFile::ReadOnly))
        return guess;
    const QStringList lines = QString::fromUtf8(list.read(longest_list)).split(u'\n');
    for (const QString &line : lines) {
        const QStringList column = line.split(u'\t');
        if (line.startsWith(u'#') || column.size() != columns || !column[0].split(u' ').contains(address.domain))
            continue;
        const QString user = column[5] == u"local" ? address.local : address.whole;
        guess.provider = column[1];
        guess.note = column[6].trimmed() == u"-" ? QString() : column[6].trimmed();
        add_listed(guess.imap, column[2], user);
        add_listed(guess.pop3, column[3], user);
        add_listed(guess.smtp, column[4], user);
    }
    return guess;
}

// Each name encrypted from the first byte, then by STARTTLS; never without: the password goes to whoever answers.
std::vector<server_guess> usual(const address_parts &address, const QStringList &heads, std::array<int, 2> ports)
{
    std::vector<server_guess> guesses;
    for (const QString &head : heads) {
        guesses.push_back({{head + address.domain, ports[0], security::tls, address.whole}});
        guesses.push_back({{head + address.domain, ports[1], security::starttls, address.whole}});
    }
    return guesses;
}

}

address_guess guess_from_address(const QString &address)
{
    const address_parts parts = parts_of(address);
    if (parts.domain.isEmpty())
        return {};
    address_guess guess = from_list(parts);
    if (!guess.provider.isEmpty())
        return guess;
    guess.imap =
        usual(parts, {QStringLiteral("imap."), QStringLiteral("mail."), QString()},
              {usual_port(client_kind::imap, security::tls), usual_port(client_kind::imap, security::starttls)});
    guess.pop3 =
        usual(parts, {QStringLiteral("pop."), QStringLiteral("pop3."), QStringLiteral("mail."), QString()},
              {usual_port(client_kind::pop3, security::tls), usual_port(client_kind::pop3, security::starttls)});
    guess.smtp = usual(parts, {QStringLiteral("smtp."), QStringLiteral("mail."), QString()},
                       {usual_smtp_port(security::tls), usual_smtp_port(security::starttls)});
    return guess;
}

}
