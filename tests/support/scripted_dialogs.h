// Dialogs of a test: queues of chosen paths and fonts (nothing is Cancel) and a transcript. In force as long as it
// lives.
#pragma once
#include "platform/dialogs.h"
#include "platform/services.h"

#include <QStringList>
#include <deque>

class scripted_dialogs : public dialog_service {
public:
    scripted_dialogs() { services.dialogs = this; }
    ~scripted_dialogs() override { services.dialogs = nullptr; }
    scripted_dialogs(const scripted_dialogs &) = delete;
    scripted_dialogs &operator=(const scripted_dialogs &) = delete;

    std::deque<std::optional<QString>> choices;
    std::deque<std::optional<chosen_font>> fonts;
    QStringList asked; // "proposal|filter"; of a font its name

    std::optional<QString> ShowSave(const QString &proposal, const QString &filter) override
    {
        return next_choice(proposal, filter);
    }
    std::optional<QString> ShowOpen(const QString &proposal, const QString &filter) override
    {
        return next_choice(proposal, filter);
    }
    std::optional<QString> ShowFolder(const QString &proposal) override
    {
        return next_choice(proposal, QStringLiteral("folder"));
    }

    std::optional<chosen_font> ShowFont(const chosen_font &proposal) override
    {
        asked += proposal.name;
        if (fonts.empty())
            qFatal("A font dialog without a prepared choice: %s", qPrintable(proposal.name));
        const auto font = fonts.front();
        fonts.pop_front();
        return font;
    }

private:
    std::optional<QString> next_choice(const QString &proposal, const QString &filter)
    {
        asked += proposal + u'|' + filter;
        if (choices.empty())
            qFatal("A file dialog without a prepared choice: %s", qPrintable(proposal));
        const auto choice = choices.front();
        choices.pop_front();
        return choice;
    }
};
