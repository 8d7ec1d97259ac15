// The line that begins a mail in an mbox: "From ann@example.net Thu Jan  1 13:00:00 2026".
#pragma once
#include <QByteArrayView>
#include <QDateTime>

namespace mbox {

// The date of such a line, as it is written, whatever zone stands beside it; invalid where there is none.
QDateTime date_of_from_line(QByteArrayView line);

// Whether a mail begins here: a From line with a date, and a header field (or nothing more) in the line below.
// Sentences that begin with "From " do not look so. The bytes must reach far enough: longest_from_lines, or to the
// file's end.
bool begins_mail(QByteArrayView bytes);
constexpr qsizetype longest_from_lines = 1024;

}
