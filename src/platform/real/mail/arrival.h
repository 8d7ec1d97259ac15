// When a mail came, by its own header: for clients whose server does not say it.
#pragma once
#include "platform/real/mail/header_block.h"
#include <QDateTime>

namespace mime {

// The first Received field's date, else Date's; wall clock of this machine, invalid where neither holds one.
QDateTime arrival_time(const header_block &head);

}
