#include "platform/real/mail/compose.h"
#include "platform/real/mail/html_to_text.h"
#include "platform/real/mail/mail_address.h"
#include "platform/real/mail/mail_encode.h"
#include <QCryptographicHash>
#include <QLocale>
#include <algorithm>
#include <array>

namespace mail {

namespace {

constexpr qsizetype longest_header_name = 70;

bool is_own_header(const QString &name)
{
    constexpr std::array<QStringView, 9> own{u"date",    u"message-id",   u"from",         u"to",
                                             u"subject", u"mime-version", u"content-type", u"content-transfer-encoding",
                                             u"bcc"};
    return std::any_of(own.begin(), own.end(),
                       [&name](QStringView one) { return name.compare(one, Qt::CaseInsensitive) == 0; });
}

bool is_header_name(const QString &name)
{
    return !name.isEmpty() && name.size() <= longest_header_name &&
           std::all_of(name.begin(), name.end(),
                       [](QChar letter) { return letter > u' ' && letter < u'\x7f' && letter != u':'; });
}

bool is_one_line(const QString &text)
{
    return std::none_of(text.begin(), text.end(),
                        [](QChar letter) { return letter.category() == QChar::Other_Control; });
}

bool may_be_added(const std::pair<QString, QString> &header)
{
    return is_header_name(header.first) && !is_own_header(header.first) && is_one_line(header.second);
}

// In English, whatever the desktop speaks: "Sat, 21 Nov 2026 02:03:04 +0100".
QByteArray date_text(const QDateTime &moment, int utc_offset)
{
    const QLocale english = QLocale::c();
    const int minutes = qAbs(utc_offset) / 60;
    const QString zone = QStringLiteral("%1%2%3")
                             .arg(QChar(utc_offset < 0 ? u'-' : u'+'))
                             .arg(minutes / 60, 2, 10, QChar(u'0'))
                             .arg(minutes % 60, 2, 10, QChar(u'0'));
    return english.toString(moment, u"ddd, dd MMM yyyy HH:mm:ss ").toLatin1() + zone.toLatin1();
}

QString one_line(const QString &text)
{
    QString line = text;
    line.replace(QStringLiteral("\r\n"), QStringLiteral(" "));
    for (QChar &letter : line)
        if (letter.category() == QChar::Other_Control)
            letter = u' ';
    return line;
}

QByteArray address_line(const char *name, const QStringList &addresses)
{
    QByteArrayList usable;
    for (const QString &address : addresses)
        if (why_not_writable(address).isEmpty())
            usable.append(wire_address(address).toUtf8());
    return usable.isEmpty() ? QByteArray() : name + usable.join(",\r\n ") + "\r\n";
}

QByteArray text_part(const char *type, const QString &content)
{
    const encoded_text text = encode_text(content);
    return QByteArray("Content-Type: ") + type + "; charset=utf-8\r\nContent-Transfer-Encoding: " + text.encoding +
           "\r\n\r\n" + text.bytes;
}

// No line that quoted-printable or base64 makes begins with "--=_"; of a plain one it is made sure.
QByteArray boundary_outside(const QByteArrayList &parts, const QByteArray &message_id)
{
    const QByteArray seed = QCryptographicHash::hash(message_id, QCryptographicHash::Sha1).toHex().first(24);
    for (int number = 0;; ++number) {
        const QByteArray boundary = "=_" + seed + '_' + QByteArray::number(number);
        if (std::none_of(parts.begin(), parts.end(), [&](const QByteArray &part) { return part.contains(boundary); }))
            return boundary;
    }
}

QByteArray html_content(const outbox::outgoing_mail &mail, const QByteArray &message_id)
{
    const QString made = mail.body.isEmpty() ? mime::html_to_text(mail.HTMLBody) + u'\n' : mail.body;
    const QByteArrayList parts{text_part("text/plain", made), text_part("text/html", mail.HTMLBody)};
    const QByteArray boundary = boundary_outside(parts, message_id);
    QByteArray bytes = "Content-Type: multipart/alternative;\r\n boundary=\"" + boundary + "\"\r\n\r\n";
    for (const QByteArray &part : parts)
        bytes += "--" + boundary + "\r\n" + part + "\r\n";
    return bytes + "--" + boundary + "--\r\n";
}

}

QString why_refused(const outbox::outgoing_mail &mail)
{
    if (!mail.SendingAccount.isEmpty() && !why_not_writable(mail.SendingAccount).isEmpty())
        return QStringLiteral("The account's own address is not usable.");
    if (!std::all_of(mail.Headers.begin(), mail.Headers.end(), may_be_added))
        return QStringLiteral("A header of the mail is not usable.");
    return {};
}

QByteArray compose(const outbox::outgoing_mail &mail, const QDateTime &moment, int utc_offset,
                   const QByteArray &message_id)
{
    QByteArray bytes;
    bytes += "Date: " + date_text(moment, utc_offset) + "\r\n";
    bytes += "Message-ID: <" + message_id + ">\r\n";
    bytes += address_line("From: ", {mail.SendingAccount});
    bytes += address_line("To: ", mail.To);
    bytes += encode_header("Subject", one_line(mail.Subject));
    for (const auto &header : mail.Headers)
        if (may_be_added(header))
            bytes += encode_header(header.first.toLatin1(), header.second);
    bytes += "MIME-Version: 1.0\r\n";
    return bytes + (mail.HTMLBody.isEmpty() ? text_part("text/plain", mail.body) : html_content(mail, message_id));
}

}
