// The colour of a window's ground, for the pages that are shown on it.
#pragma once
#include <QtGlobal>

class QWidget;

quint32 GetBkColor(const QWidget &window); // as the platform gives one: blue, green, red from the highest byte down
