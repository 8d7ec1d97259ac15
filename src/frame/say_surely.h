// A box whose words must reach the user. Each box first commits what was done before; where that fails no box is shown:
// it is logged, and the words stand in the status line with the reason. The boxes: messages.h.
#pragma once
#include "frame/messages.h"

// form and routine are the words of the log.
void say_surely(const char *form, const char *routine, const QString &words,
                const QString &title = QStringLiteral("Tessaly"), message_icon icon = message_icon::information);
