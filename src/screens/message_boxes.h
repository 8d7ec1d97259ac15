// The desktop's message boxes, over the active window. Escape is No or Cancel.
// Its double in tests: tests/support/scripted_messages.h. Files and folders: desktop_dialogs.h.
#pragma once
#include "frame/messages.h"

class message_boxes : public message_service {
public:
    std::optional<QString> show(const message_box &box) override;
};
