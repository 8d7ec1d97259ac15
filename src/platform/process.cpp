#include "platform/process.h"
#include "platform/outside_effects.h"
#include "platform/run_time_error.h"

#include <cstdio>
#include <unistd.h>

void end_process(int status)
{
    try {
        before_outside_effect();
    } catch (const run_time_error &) {
        // The store cannot be written. What it refused is lost either way; the process ends all the same.
    }
    std::fflush(nullptr);
    _exit(status); // no destructors: windows may be in the middle of an event
}
