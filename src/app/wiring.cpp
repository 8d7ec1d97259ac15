#include "app/wiring.h"
#include "frame/help.h"
#include "frame/messages.h"
#include "platform/services.h"
#include "platform/winopen.h"
#include "screens/frame/help_frm.h"

#include <QDesktopServices>
#include <QUrl>

wiring::wiring()
{
    set_message_service(&boxes);
    services.dialogs = &dialogs;
    services.printing = &printing;
    services.mail_client = &mail;
    services.mail_session = &mail_session;
    set_help_viewer([](const QString &file, const QString &topic) { the<help_frm>().open_help(file, topic); });
    set_winopen([](const QString &path) {
        const bool is_address = path.startsWith(u"http://") || path.startsWith(u"https://");
        return QDesktopServices::openUrl(is_address ? QUrl(path) : QUrl::fromLocalFile(path));
    });
}

wiring::~wiring()
{
    set_help_viewer({});
    set_winopen({});
    set_message_service(nullptr);
    services = {};
}
