// What Main does before a window exists, and what the splash decides when it goes.
#pragma once

enum class start { another_instance, first_run, console };

// Says "Another instance ..." itself. Opens the store (which may end the process), reads install, and keeps
// install_location. Order: instance, store, install, location.
start start_up();

// The splash is gone: true when no map exists yet, so that the Mail Mapping Wizard should open by itself.
bool Load_Wizard();
