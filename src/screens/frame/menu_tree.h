// The console's menu: every menu and command with its name and caption, in the order shown.
// What a command does: menuFrm_commands.cpp.
#pragma once
#include <vector>

struct menu_entry {
    int depth; // 0: a menu of the bar; a deeper entry belongs to the last shallower one
    bool is_menu;
    const char *name;    // the control's
    const char *caption; // "&" marks the access key
};

const std::vector<menu_entry> &menu_tree();
