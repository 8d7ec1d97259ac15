// How the program ends, whoever ends it: what was begun is finished, what the user arranged is kept, the store is
// closed. Then process.h, but for tests, which go on.
#pragma once
#include <functional>

void end_program();
void set_program_end(std::function<void()> end); // empty: the process ends
