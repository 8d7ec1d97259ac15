// Works that mostly wait, several at a time.
#pragma once
#include <QStringList>
#include <functional>

// Calls work with 0 .. count - 1, in threads; what they give back that is not "", in their order.
QStringList in_lanes(int count, const std::function<QString(int)> &work);
