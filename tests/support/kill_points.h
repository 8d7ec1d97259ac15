// Where a test kills: points that are spread over a run, from a seed that is printed and can be given again.
#pragma once
#include <QList>

// So many of 1 .. calls, one at random in each equal part. TESSALY_SEED repeats a run.
QList<int> points_in(int calls, int points);

// 100 of them when TESSALY_LONG is set, else 20.
int usual_points();
