#include "app/wiring.h"
#include "frame/messages.h"
#include "platform/services.h"
#include "platform/winopen.h"

#include <QDesktopServices>
#include <QUrl>

wiring::wiring()
{
    set_message_service(&boxes);
    services.dialogs = &dialogs;
    services.printing = &printing;
    services.mail_client = &mail;
    services.mail_session = &mail_session;
    set_winopen([](const QString &path) { return QDesktopServices::openUrl(QUrl::fromLocalFile(path)); });
}

wiring::~wiring()
{
    set_winopen({});
    set_message_service(nullptr);
    services = {};
}
