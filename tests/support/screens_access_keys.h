// The access keys of a window and of the console's menu, one letter each.
#pragma once
#include "screens/frame/menuFrm.h"

#include <QAbstractButton>
#include <QAction>
#include <QKeySequence>
#include <QLabel>
#include <QMenuBar>
#include <algorithm>

// The keys of what can be reached in the window as it is shown.
inline QString access_keys(const QWidget &window)
{
    QString keys;
    const auto add = [&keys](const QString &caption) {
        const QString key = QKeySequence::mnemonic(caption).toString().section('+', -1);
        keys += key;
    };
    for (const auto *button : window.findChildren<QAbstractButton *>())
        if (button->isVisibleTo(&window))
            add(button->text());
    for (const auto *label : window.findChildren<QLabel *>())
        if (label->buddy() && label->isVisibleTo(&window))
            add(label->text());
    return keys;
}

inline QString repeated_letter(QString keys)
{
    std::sort(keys.begin(), keys.end());
    const auto twice = std::adjacent_find(keys.begin(), keys.end());
    return twice == keys.end() ? QString() : QString(*twice);
}

inline QString menu_keys(const menuFrm &console)
{
    QString keys;
    for (const QAction *action : console.menuBar()->actions())
        if (action->isVisible())
            keys += QKeySequence::mnemonic(action->text()).toString().section('+', -1);
    return keys;
}
