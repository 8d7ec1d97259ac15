#include "app/wiring.h"
#include "frame/help.h"
#include "frame/messages.h"
#include "platform/services.h"
#include "platform/winopen.h"
#include "screens/frame/help_frm.h"

#include <QDesktopServices>
#include <QUrl>

namespace {

QUrl url_of(const QString &path)
{
    for (const char *scheme : {"mailto:", "http://", "https://"})
        if (path.startsWith(QLatin1String(scheme)))
            return QUrl::fromEncoded(path.toUtf8());
    return QUrl::fromLocalFile(path);
}

}

wiring::wiring()
{
    set_message_service(&boxes);
    services.dialogs = &dialogs;
    services.printing = &printing;
    services.mail_client = &mail;
    services.mail_session = &mail_session;
    set_help_viewer([](const QString &file, const QString &topic) { the<help_frm>().open_help(file, topic); });
    set_winopen([](const QString &path) { return QDesktopServices::openUrl(url_of(path)); });
}

wiring::~wiring()
{
    set_help_viewer({});
    set_winopen({});
    set_message_service(nullptr);
    services = {};
}
