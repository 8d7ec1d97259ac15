// Back-up: a consistent copy of the store in the folder that the user chose (setting "backup").
#pragma once

void run_backup();
