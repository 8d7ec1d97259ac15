// Dates of the store: kept as "YYYY-MM-DD HH:MM:SS", spoken in US form whatever the locale.
#pragma once
#include <QDateTime>
#include <QString>
#include <optional>

namespace jet {

// "M/D/YYYY h:mm:ss AM/PM"; no time at midnight, no date on day zero (12/30/1899).
QString us_text(const QDateTime &date);

// Reads M/D/YYYY[ h:mm[:ss][ AM|PM]], a time alone (day zero), and the kept form. A first number above 12 is the day;
// years of two digits are 1930 to 2029.
std::optional<QDateTime> read_date(QStringView text);

QString kept_text(const QDateTime &date);
// Writes the 19 letters of the kept form without a terminator.
void write_kept(const QDateTime &date, char *to);
// Reads exactly the kept form; what has another one gives an invalid date.
QDateTime read_kept(const char *text, int length);

// Days and their fraction since day zero, as a number read as a date means.
double day_number(const QDateTime &date);
QDateTime from_day_number(double number);

}
