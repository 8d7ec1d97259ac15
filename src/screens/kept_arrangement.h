// What the user arranges on the screen (a list's columns, the parts of a window, the console's place), kept in the
// settings from one run to the next. Each is kept when it goes out of sight, and all before the program ends, which
// hides nothing: frame/closing.h. Those that do: list_view.h, kept_splitter.h, frame/menuFrm.h.
#pragma once

class kept_arrangement {
public:
    virtual ~kept_arrangement() = default;
    virtual void keep_arrangement() = 0; // what cannot be saved is logged, and no more
};

void keep_all_arrangements();
