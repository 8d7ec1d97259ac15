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

QString qt_filter(const QString &filter)
{
    if (!filter.contains(u'|'))
        return filter;
    const QStringList parts = filter.split(u'|');
    QStringList filters;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2)
        filters += parts[i] + " (" + QString(parts[i + 1]).replace(u';', u' ') + ')';
    return filters.join(QStringLiteral(";;"));
}

std::optional<QString> desktop_dialogs::ShowSave(const QString &proposal, const QString &filter)
{
    const busy_scope while_open;
    const QString path = QFileDialog::getSaveFileName(QApplication::activeWindow(), QStringLiteral("Save As"), proposal,
                                                      qt_filter(filter), nullptr, QFileDialog::DontConfirmOverwrite);
    return chosen(path);
}

std::optional<QString> desktop_dialogs::ShowOpen(const QString &proposal, const QString &filter)
{
    const busy_scope while_open;
    return chosen(QFileDialog::getOpenFileName(QApplication::activeWindow(), QStringLiteral("Open"), proposal,
                                               qt_filter(filter)));
}

std::optional<QString> desktop_dialogs::ShowFolder(const QString &proposal)
{
    const busy_scope while_open;
    return chosen(
        QFileDialog::getExistingDirectory(QApplication::activeWindow(), QStringLiteral("Choose a Folder"), proposal));
}
