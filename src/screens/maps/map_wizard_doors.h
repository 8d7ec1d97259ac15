// The ways into the Mail Mapping Wizard and out of it. Its first screen: MapWizardStep1_frm.h, its memory:
// maps/map_wizard.h.
#pragma once

// The console's command: the accounts, or the welcome while there is no map. A wizard that is open comes to the front,
// as a second one would write into the memory of the first.
void open_map_wizard();

// The welcome, whatever is stored; an open wizard comes to the front in its place.
void open_map_wizard_welcome();

// False: no step is open. True: its memory is in use, and nobody else may write there.
bool bring_map_wizard_to_front();

// Quit wizard: asks only while there is no map. True: the work in memory is dropped, and the screen should go.
// form is its name in the log.
bool quits_map_wizard(const char *form);
