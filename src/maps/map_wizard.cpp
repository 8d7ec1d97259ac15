#include "maps/map_wizard.h"

namespace maps {

map_wizard_state map_wizard;

}
