// The program's end in a test of a screen: counted instead of done, until set_program_end({}).
#pragma once
#include "screens/frame/closing.h"

inline void count_program_ends(int &ends)
{
    ends = 0;
    set_program_end([&ends] { ++ends; });
}
