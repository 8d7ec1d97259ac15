#include "platform/real/mail/mail_address.h"
#include "platform/real/mail/charset.h"
#include "platform/real/mail/encoded_words.h"
#include "platform/real/mail/gmime_headers.h"
#include <QUrl>
#include <algorithm>
#include <memory>

namespace mail {

namespace {

constexpr qsizetype longest_address = 254; // what the mail protocols carry
constexpr int most_addresses = 2000;
constexpr int deepest_group = 8;
constexpr int most_colons = 200;

bool holds_control_or_blank(const QString &text)
{
    for (const QChar letter : text)
        if (letter.isSpace() || letter.category() == QChar::Other_Control || letter.isNull())
            return true;
    return false;
}

QString bare_address(InternetAddressMailbox *mailbox)
{
    const char *address = internet_address_mailbox_get_addr(mailbox);
    if (!address)
        return {};
    const QByteArrayView raw(address);
    return raw.startsWith("=?") ? mime::decode_header_text(raw) : mime::text_in_charset(raw, {});
}

// The library descends into a group for every colon, as deep as its stack and deeper.
QByteArray without_endless_groups(const QByteArray &field)
{
    qsizetype colon = -1;
    for (int count = 0; count < most_colons; ++count) {
        colon = field.indexOf(':', colon + 1);
        if (colon < 0)
            return field;
    }
    return field.first(colon);
}

bool is_letter_or_digit(char letter)
{
    return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') || (letter >= '0' && letter <= '9');
}

bool is_plain_address(QByteArrayView text)
{
    qsizetype signs = 0;
    for (const char letter : text) {
        signs += letter == '@';
        if (!is_letter_or_digit(letter) && !QByteArrayView("@._-+").contains(letter))
            return false;
    }
    return signs == 1 && !text.startsWith('@') && !text.endsWith('@') && !text.startsWith('.') &&
           !text.contains("..") && !text.contains(".@") && !text.contains("@.") && !text.endsWith('.');
}

// "ann@example.org" or "Ann Bee <ann@example.org>", as nearly all fields are: read without the library. "" for others.
QByteArrayView only_plain_address(QByteArrayView field)
{
    const QByteArrayView text = field.trimmed();
    if (!text.endsWith('>'))
        return is_plain_address(text) ? text : QByteArrayView();
    const qsizetype open = text.indexOf('<');
    for (const char letter : text.first(qMax<qsizetype>(open, 0)))
        if (!is_letter_or_digit(letter) && letter != ' ')
            return {};
    const QByteArrayView address = open < 0 ? QByteArrayView() : text.sliced(open + 1).chopped(1);
    return is_plain_address(address) ? address : QByteArrayView();
}

void collect(InternetAddressList *list, int depth, QStringList &found)
{
    for (int index = 0; index < internet_address_list_length(list) && found.size() < most_addresses; ++index) {
        InternetAddress *one = internet_address_list_get_address(list, index);
        if (INTERNET_ADDRESS_IS_GROUP(one)) {
            InternetAddressList *members = internet_address_group_get_members(INTERNET_ADDRESS_GROUP(one));
            if (members && depth < deepest_group)
                collect(members, depth + 1, found);
            continue;
        }
        const QString address = bare_address(INTERNET_ADDRESS_MAILBOX(one));
        if (address.contains(u'@') && !holds_control_or_blank(address))
            found.append(address);
    }
}

}

QStringList addresses_in(const QByteArray &field)
{
    if (field.isEmpty())
        return {};
    if (const QByteArrayView plain = only_plain_address(field); !plain.isEmpty())
        return {QString::fromLatin1(plain)};
    mime::start_gmime();
    QByteArray text = without_endless_groups(field);
    text.replace('\0', ' ');
    const std::unique_ptr<InternetAddressList, mime::unref_object> list(
        internet_address_list_parse(nullptr, text.constData()));
    QStringList found;
    if (list)
        collect(list.get(), 0, found);
    return found;
}

QString why_not_writable(const QString &address)
{
    if (address.isEmpty())
        return QStringLiteral("There is no address.");
    if (address.size() > longest_address)
        return QStringLiteral("The address is too long.");
    if (holds_control_or_blank(address) || !address.isValidUtf16())
        return QStringLiteral("The address holds a blank, a line end or a control character.");
    const qsizetype at = address.indexOf(u'@');
    if (at <= 0 || at == address.size() - 1 || address.indexOf(u'@', at + 1) >= 0)
        return QStringLiteral("The address is not of the form name@domain.");
    for (const QChar letter : address)
        if (QStringView(u"<>()[]\\,;:\"").contains(letter))
            return QStringLiteral("The address holds a character that no address may hold.");
    const QStringView domain = QStringView(address).sliced(at + 1);
    if (domain.startsWith(u'.') || domain.endsWith(u'.') || domain.contains(u".."))
        return QStringLiteral("The domain of the address is not complete.");
    if (wire_address(address).endsWith(u'@'))
        return QStringLiteral("The domain of the address is not a domain.");
    return {};
}

QString wire_address(const QString &address)
{
    const qsizetype at = address.lastIndexOf(u'@');
    const QString domain = address.sliced(at + 1);
    if (std::all_of(domain.begin(), domain.end(), [](QChar letter) { return letter < u'\x80'; }))
        return address;
    return address.first(at + 1) + QString::fromLatin1(QUrl::toAce(domain)); // nothing for what no domain may hold
}

}
