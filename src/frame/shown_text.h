// How much of a text a box shows: mail is hostile, and many megabytes would be laid out for minutes.
#pragma once
#include <QString>

constexpr qsizetype most_letters_shown = 300000;
constexpr QLatin1String cut_text_notice("\n\n(The text is longer than what is shown here.)");
