#include "intake/fetch_session.h"

namespace intake {

fetch_state fetching;

}
