// How and when the last fetch of mail ended, and what the status bar says of it. The values: session.h.
#pragma once
#include <QString>

enum class fetch_end { whole, stopped, failed, unfilled }; // stopped: by the user; unfilled: mails are in no table yet
void note_fetch_end(fetch_end how);

struct fetch_words {
    QString line;  // "": no fetch since the start
    QString whole; // in sentences
};
fetch_words last_fetch_words();
