// Cutting the sample mail into numbered pieces, as the wizard shows it. How the parser cuts: intake/map_fit.h.
// The two agree for mails with CR LF line ends; the wizard cuts the trimmed body, at LF.
#pragma once
#include <QString>
#include <QStringList>
#include <vector>

namespace maps {

struct separator_choice {
    QString caption; // an entry of allval_c
    QString stored;  // map_separator
};
// The seven entries of allval_c behind "Select separator", in its order.
const std::vector<separator_choice> &separator_choices();

// The pieces of a stored body: a map_separator of "Line" cuts at LF, "Tab" at a real tab, another one at itself.
QStringList cut_sample(const QString &body, const QString &map_separator);

// A piece as the user sees it: without CR, in separator mode without LF too.
QString shown_piece(const QString &piece, const QString &map_separator);

// The whole mail with each piece numbered: the piece, "  <Separator", its number from 1, ">", CR LF.
QString numbered_body(const QStringList &pieces, const QString &map_separator);

QString separator_entry(int piece);            // "Separator3", an entry of Line_c; piece from 1
QString as_position(const QString &entry);     // the first "Separator" by "Line", case-blind
QString as_separator(const QString &position); // the way back, for the preview

}
