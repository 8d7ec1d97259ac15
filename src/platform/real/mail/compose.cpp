#include "platform/real/mail/compose.h"
#include "platform/real/mail/mail_address.h"
#include "platform/real/mail/mail_encode.h"
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
            usable.append(address.toUtf8());
    return usable.isEmpty() ? QByteArray() : name + usable.join(",\r\n ") + "\r\n";
}

}

QString why_refused(const outbox::outgoing_mail &mail)
{
    if (mail.To.isEmpty())
        return why_not_writable({});
    for (const QString &address : mail.To)
        if (const QString reason = why_not_writable(address); !reason.isEmpty())
            return reason;
    if (!mail.SendingAccount.isEmpty() && !why_not_writable(mail.SendingAccount).isEmpty())
        return QStringLiteral("The account's own address is not usable.");
    if (!std::all_of(mail.Headers.begin(), mail.Headers.end(), may_be_added))
        return QStringLiteral("A header of the mail is not usable.");
    return {};
}

QByteArray compose(const outbox::outgoing_mail &mail, const QDateTime &moment, int utc_offset,
                   const QByteArray &message_id)
{
    const encoded_text text = encode_text(mail.body);
    QByteArray bytes;
    bytes += "Date: " + date_text(moment, utc_offset) + "\r\n";
    bytes += "Message-ID: <" + message_id + ">\r\n";
    bytes += address_line("From: ", {mail.SendingAccount});
    bytes += address_line("To: ", mail.To);
    bytes += encode_header("Subject", one_line(mail.Subject));
    for (const auto &header : mail.Headers)
        if (may_be_added(header))
            bytes += encode_header(header.first.toLatin1(), header.second);
    bytes += "MIME-Version: 1.0\r\nContent-Type: text/plain; charset=utf-8\r\n";
    bytes += "Content-Transfer-Encoding: " + text.encoding + "\r\n\r\n";
    return bytes + text.bytes;
}

}
