#include "screens/spoken_names.h"
#include "platform/settings.h"

#include <QAbstractButton>
#include <QGroupBox>
#include <QLabel>

namespace {

QString without_access_key(QString caption)
{
    return caption.replace(QStringLiteral("&&"), QStringLiteral("\x01")).remove(u'&').replace(QChar(1), u'&');
}

QString caption_of(const QWidget &control)
{
    if (const auto *button = qobject_cast<const QAbstractButton *>(&control))
        return button->text();
    if (const auto *box = qobject_cast<const QGroupBox *>(&control))
        return box->title();
    return {};
}

}

void give_spoken_names(QWidget &window)
{
    for (const QLabel *label : window.findChildren<QLabel *>()) {
        if (label->buddy() && label->buddy()->accessibleName().isEmpty())
            label->buddy()->setAccessibleName(without_access_key(label->text()));
    }
    const bool names_told = GetSetting(QStringLiteral("tests"), QStringLiteral("control_names")) == u"true";
    for (QWidget *control : window.findChildren<QWidget *>()) {
        if (control->objectName().isEmpty() || control->objectName().startsWith(u"qt_"))
            continue;
        if (control->accessibleName().isEmpty())
            control->setAccessibleName(without_access_key(caption_of(*control)));
        if (names_told) // for drivers from outside only: a screen reader would read it aloud
            control->setAccessibleDescription(control->objectName());
    }
}
