// Shows a file, or an address with its scheme ("https://...", "mailto:..."), to the user in the desktop's own program
// for it. Behind it: whoever set_winopen was given (app/wiring: the desktop's opener; tests: a list).
#pragma once
#include <QString>
#include <functional>

// False: nothing on this desktop shows it, or nobody is set. What the store was given so far is kept first.
bool winopen(const QString &path);
void set_winopen(std::function<bool(const QString &path)> opener);
