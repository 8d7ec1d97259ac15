#include "support/screens_driver.h"
#include "frame/session.h"
#include "frame/status.h"
#include "screens/screen.h"

#include <QApplication>
#include <QDialog>
#include <QEvent>
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

void forget_screens()
{
    unload_all_screens();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    set_screen_area(nullptr);
    set_progress_sink({});
    session = {};
    QSettings(QStringLiteral("brenmoorbiz")).clear();
}
