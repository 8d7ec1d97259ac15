#include "screens/frame/console_place.h"
#include "platform/settings.h"

#include <QWidget>

namespace {

const auto place_section = QStringLiteral("screens");
const auto place_key = QStringLiteral("menuFrm.place");

QString kept_place()
{
    return GetSetting(place_section, place_key);
}

}

// Brings the window onto a screen that is there, when the one it stood on is gone.
void restore_console_place(QWidget &console)
{
    console.restoreGeometry(QByteArray::fromBase64(kept_place().toLatin1()));
}

void keep_console_place(const QWidget &console)
{
    const QString place = QString::fromLatin1(console.saveGeometry().toBase64());
    if (place != kept_place())
        SaveSetting(place_section, place_key, place);
}
