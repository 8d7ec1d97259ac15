// The desktop's own tool that shows what machine this is.
#pragma once

bool start_system_information(); // false: there is none, or none that starts
