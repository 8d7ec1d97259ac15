// A desktop on which no box can be shown, for tests of what a routine does with a failure. In force as long as it
// lives; then the boxes given to it are in force again.
#pragma once
#include "frame/messages.h"
#include "platform/run_time_error.h"

class failing_messages : public message_service {
public:
    explicit failing_messages(message_service &afterwards) : usual(afterwards) { set_message_service(this); }
    ~failing_messages() { set_message_service(&usual); }
    failing_messages(const failing_messages &) = delete;
    failing_messages &operator=(const failing_messages &) = delete;

    std::optional<QString> show(const message_box &) override { throw run_time_error{5, "no box"}; }

private:
    message_service &usual;
};
