// The help file beside the program.
#pragma once
#include <QString>
#include <functional>

// True: the file is there and was opened at the topic. False: it is missing, and nothing happened.
bool show_help(const QString &topic);
void set_help_viewer(std::function<void(const QString &file, const QString &topic)> viewer);
