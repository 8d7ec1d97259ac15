#include "platform/real/smtp/wire_form.h"
#include <QUrl>
#include <algorithm>

namespace smtp {

namespace {

bool is_eight_bit(QByteArrayView bytes)
{
    return std::any_of(bytes.begin(), bytes.end(), [](char letter) { return uchar(letter) > 0x7F; });
}

}

void append_stuffed(QByteArrayView mail, QByteArray &to)
{
    to.reserve(to.size() + mail.size() + mail.size() / 64 + 16);
    while (!mail.isEmpty()) {
        const auto *const end =
            std::find_if(mail.begin(), mail.end(), [](char letter) { return letter == '\r' || letter == '\n'; });
        const QByteArrayView line(mail.begin(), end);
        if (line.startsWith('.'))
            to.append('.');
        to.append(line).append("\r\n");
        const qsizetype line_end = QByteArrayView(end, mail.end()).startsWith("\r\n") ? 2 : 1;
        mail = mail.sliced(qMin(line.size() + line_end, mail.size()));
    }
}

letters letters_of(QByteArrayView mail)
{
    const qsizetype at = mail.indexOf("\r\n\r\n");
    const qsizetype body = at < 0 ? mail.size() : at;
    return {is_eight_bit(mail.first(body)), is_eight_bit(mail.sliced(body))};
}

envelope_address envelope_form(const QString &address)
{
    const QByteArray whole = address.toUtf8();
    if (!is_eight_bit(whole))
        return {whole, false};
    const qsizetype at = address.indexOf(u'@');
    const QByteArray name = address.left(at).toUtf8();
    const QByteArray domain = QUrl::toAce(address.mid(at + 1));
    if (is_eight_bit(name) || domain.isEmpty())
        return {whole, true};
    return {name + '@' + domain, false};
}

}
