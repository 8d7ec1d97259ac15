#include "screens/desktop_dialogs.h"
#include "frame/messages.h"

#include <QApplication>
#include <QFileDialog>

std::optional<QString> desktop_dialogs::ShowSave(const QString &proposal, const QString &filter)
{
    const busy_scope while_open;
    const QString path = QFileDialog::getSaveFileName(QApplication::activeWindow(), QStringLiteral("Save As"), proposal,
                                                      filter, nullptr, QFileDialog::DontConfirmOverwrite);
    if (path.isEmpty())
        return std::nullopt;
    return path;
}
