// GMime's own headers, which use a word that Qt has made a macro.
#pragma once
#pragma push_macro("signals")
#undef signals
#include <gmime/gmime.h>
#pragma pop_macro("signals")

namespace mime {

void start_gmime(); // once, before the first use; further calls do nothing

struct unref_object {
    void operator()(gpointer object) const { g_object_unref(object); }
};

}
