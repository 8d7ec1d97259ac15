#include "platform/real/outbox/sending_address.h"
#include "platform/real/mail/header_block.h"
#include "platform/real/mail/mail_address.h"

namespace outbox {

QString usual_sending_address(const mail::client_settings &settings)
{
    if (!settings.from.isEmpty())
        return settings.from;
    for (const QString &user : {settings.smtp.user, settings.incoming.user})
        if (mail::why_not_writable(user).isEmpty())
            return user;
    return {};
}

QByteArray with_sender(const QByteArray &eml, const QString &address)
{
    if (!mime::read_header_block(eml).from.isEmpty())
        return eml;
    return "From: " + mail::wire_address(address).toUtf8() + "\r\n" + eml;
}

}
