#include "screens/desktop_dialogs.h"
#include "frame/messages.h"
#include "screens/kept_font.h"

#include <QApplication>
#include <QFileDialog>
#include <QFontDialog>

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

std::optional<chosen_font> desktop_dialogs::ShowFont(const chosen_font &proposal)
{
    const busy_scope while_open;
    bool is_chosen = false;
    const QFont font = QFontDialog::getFont(&is_chosen, as_font(proposal), QApplication::activeWindow(),
                                            QStringLiteral("Choose a Font"));
    if (!is_chosen)
        return std::nullopt;
    return as_chosen(font);
}
