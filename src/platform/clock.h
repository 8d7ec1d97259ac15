// "Now" and "today". Every QDateTime of the program is a wall-clock time to the second, carried as Qt::UTC so that no
// daylight-saving rule ever shifts a value between the mail, the store and the screen.
#pragma once
#include <QDate>
#include <QDateTime>
#include <functional>

QDateTime now(); // local wall clock, no milliseconds
QDate today();
qint64 seconds_now();                             // the machine's, since 1970, for what outlives a time zone
QDateTime wall_clock(qint64 seconds_since_1970);  // a moment as this machine's local wall clock shows it
void set_clock(std::function<QDateTime()> clock); // empty: the machine's own again
