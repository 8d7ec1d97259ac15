// As which address a mail goes out that has no account of its own.
#pragma once
#include "platform/mail_settings.h"
#include <QByteArray>

namespace outbox {

// The one that is set, else the name of a login when it is an address; "" without any.
QString usual_sending_address(const mail::client_settings &settings);

// The mail with a From of that address when it has none.
QByteArray with_sender(const QByteArray &mail, const QString &address);

}
