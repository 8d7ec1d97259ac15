// How the program ends when the console closes: process.h, but for tests, which go on.
#pragma once
#include <functional>

void end_program();
void set_program_end(std::function<void()> end); // empty: the process ends
