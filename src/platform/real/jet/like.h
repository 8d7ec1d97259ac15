// The patterns of "like": % any run, _ one letter, [a-z] and [abc] one of, [!..] and [^..] none of; case ignored.
// "*", "?" and "#" are plain letters.
#pragma once
#include <QStringView>

namespace jet {

bool pattern_is_whole(QStringView pattern);          // no bracket is left open
bool is_like(QStringView text, QStringView pattern); // the pattern must be whole

}
