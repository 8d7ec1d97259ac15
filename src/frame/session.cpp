#include "frame/session.h"

session_state session;
