// The desktop's dialogs for files and fonts, over the active window.
#pragma once
#include "platform/dialogs.h"

// "words|*.a;*.b|words|*.c", as the program writes filters, in Qt's writing; one without "|" stays.
QString qt_filter(const QString &filter);

class desktop_dialogs : public dialog_service {
public:
    std::optional<QString> ShowSave(const QString &proposal, const QString &filter) override;
    std::optional<QString> ShowOpen(const QString &proposal, const QString &filter) override;
    std::optional<QString> ShowFolder(const QString &proposal) override;
    std::optional<chosen_font> ShowFont(const chosen_font &proposal) override;
};
