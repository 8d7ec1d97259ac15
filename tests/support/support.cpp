#include "support/scripted_dialogs.h"
#include "support/scripted_messages.h"
