// Ends the process, as kill -9 does, before the n-th call that changes something on disk: write, fsync, rename,
// renameat2, unlink or mkdir. Only in a forked child of a test that links this.
#pragma once

void die_before_disk_call(int number); // from 1; 0: never
int disk_calls();                      // made so far, since the last die_before_disk_call
