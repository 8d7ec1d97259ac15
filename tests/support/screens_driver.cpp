#include "support/screens_driver.h"
#include "frame/session.h"
#include "frame/status.h"
#include "screens/screen.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QLabel>
#include <QSettings>
#include <QTimer>

Responder::Responder(const QStringList &expected_titles) : expected(expected_titles)
{
    QCoreApplication::instance()->installEventFilter(this);
}

Responder::~Responder()
{
    QCoreApplication::instance()->removeEventFilter(this);
}

bool Responder::eventFilter(QObject *watched, QEvent *event)
{
    auto *dialog = qobject_cast<QDialog *>(watched);
    if (dialog && event->type() == QEvent::Show) {
        seen += dialog->windowTitle();
        if (!expected.contains(dialog->windowTitle())) {
            refused += dialog->windowTitle();
            QTimer::singleShot(0, dialog, [dialog] { dialog->done(QDialog::Rejected); });
        }
    }
    return QObject::eventFilter(watched, event);
}

QString key_clash(const QWidget &screen)
{
    QStringList captions;
    for (const QAbstractButton *button : screen.findChildren<QAbstractButton *>())
        if (!button->text().isEmpty())
            captions += button->text();
    for (const QLabel *label : screen.findChildren<QLabel *>())
        if (label->buddy())
            captions += label->text();
    QString keys = "fmlwpho"; // the console's menus
    for (const QString &caption : captions) {
        const QChar key = caption[caption.indexOf(u'&') + 1].toLower();
        if (!caption.contains(u'&') || keys.contains(key))
            return caption;
        keys += key;
    }
    return captions.isEmpty() ? "there are no captions" : QString();
}

void forget_screens()
{
    unload_all_screens();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    set_screen_area(nullptr);
    set_progress_sink({});
    session = {};
    QSettings(QStringLiteral("brenmoorbiz")).clear();
}
