// The driver's message boxes: a message is a line on stderr, a question ends the driver with status 2.
#pragma once
#include "frame/messages.h"

class job_messages : public message_service {
public:
    std::optional<QString> show(const message_box &box) override;
};
