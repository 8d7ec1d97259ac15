// The end of the process, from wherever it is decided: every open store is committed and closed, then the process is
// gone with the status. Nothing runs afterwards.
#pragma once

[[noreturn]] void end_process(int status = 0);
