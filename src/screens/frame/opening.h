// Main: the start of the program and, once more, what follows the first-run setup. How it ends: closing.h.
#pragma once

// Tests for another instance, opens the store, and shows the console with the splash; in a store that is not set up
// yet, the first screen of the setup. Where that is not possible it says why and ends the process.
void Main();
