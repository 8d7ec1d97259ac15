// What the process knows of its Outbox: the one state of the subsystem.
#pragma once
#include "platform/real/outbox/answer_ledger.h"
#include "platform/real/outbox/outbox_shelf.h"
#include <functional>
#include <memory>

namespace outbox {

struct outbox_state {
    std::shared_ptr<outbox_shelf> shelf; // of the program's folder as it was when last asked for
    std::unique_ptr<answer_ledger> ledger;
    qint64 last_number = 0;
    std::function<void()> changed; // whoever delivers: something was handed over, or is to be sent again
};
outbox_state &state_in_use(); // of the program's folder as it is now

}
