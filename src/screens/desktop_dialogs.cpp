#include "screens/desktop_dialogs.h"
#include "frame/messages.h"

#include <QApplication>
#include <QFileDialog>

namespace {

std::optional<QString> chosen(const QString &path)
{
    if (path.isEmpty())
        return std::nullopt;
    return path;
}

}

std::optional<QString> desktop_dialogs::ShowSave(const QString &proposal, const QString &filter)
{
    const busy_scope while_open;
    const QString path = QFileDialog::getSaveFileName(QApplication::activeWindow(), QStringLiteral("Save As"), proposal,
                                                      filter, nullptr, QFileDialog::DontConfirmOverwrite);
    return chosen(path);
}

std::optional<QString> desktop_dialogs::ShowOpen(const QString &proposal, const QString &filter)
{
    const busy_scope while_open;
    return chosen(QFileDialog::getOpenFileName(QApplication::activeWindow(), QStringLiteral("Open"), proposal, filter));
}

std::optional<QString> desktop_dialogs::ShowFolder(const QString &proposal)
{
    const busy_scope while_open;
    return chosen(
        QFileDialog::getExistingDirectory(QApplication::activeWindow(), QStringLiteral("Choose a Folder"), proposal));
}
