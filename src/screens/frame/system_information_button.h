// What the button "System Info..." does, wherever it stands.
#pragma once

void show_system_information(const char *form_in_log);
