// What the program means by trim, same, numeric, pieces and so on, decided once. Lengths are QString lengths; case is
// blind letter by letter (platform/letter_case.h).
#pragma once
#include "platform/letter_case.h"
#include "platform/run_time_error.h"
#include <QDateTime>
#include <QString>
#include <QStringList>

QString trim(QStringView text);                                            // outer blanks (U+0020) only
bool same_text(QStringView a, QStringView b);                              // case-blind
bool contains_text(QStringView text, QStringView part);                    // case-blind; "" is contained in nothing
QString replace_all(QStringView text, QStringView part, QStringView by);   // case-blind, one pass; "" finds nothing
QString replace_first(QStringView text, QStringView part, QStringView by); // case-blind, the first occurrence only
QString remove_all(QStringView text, QStringView part);                    // the same, by nothing
QString remove_first(QStringView text, QStringView part);                  // case-blind, the first occurrence only
QStringList pieces(const QString &text, const QString &separator);         // letter for letter; "" has no pieces
QString left(const QString &text, qsizetype count); // never halves a surrogate pair: one less then
QString crlf_line_ends(QStringView text);           // each LF becomes CR LF, whatever stands before it

bool is_numeric(QStringView text); // outer blanks, sign, digits with optional thousands commas, one point, exponent
QString plain_number(QStringView text); // a numeric text without its blanks and thousands commas; "" for any other
qint16 to_int16(QStringView text); // throws 6 "Overflow" outside -32768..32767, 13 "Type mismatch" without a number
int leading_number(
    QStringView text); // the whole number that the text starts with, 0 without one; held at the int range

QString us_date(const QDate &date);            // 8/13/2026
QString us_date_time(const QDateTime &moment); // 8/13/2026 1:02:03 PM
QDate us_date_in(const QString &text);         // of a text in just that form; not valid: it has another
QDateTime us_date_time_in(const QString &text);
