// One check on its way: what was asked, what was found so far, and the steps as they are told.
#pragma once
#include "platform/mail_client_check.h"

namespace mail {

struct step_end {
    check_state state = check_state::good;
    QString words;
};

class check_run {
public:
    using teller = std::function<void(const check_line &)>;
    check_run(const check_request &wanted, const net::patience &how_long, const teller &listener);

    // A step whose end is what body gives, or the failure that it throws. Gives whether it went well, or nearly so.
    bool step(const QString &name, const std::function<step_end()> &body);
    void begin(const QString &name); // throws cancelled when the user wants no more
    void end(const step_end &how);
    void tell(const QString &name, const step_end &how); // begun and ended at once

    QString address() const; // whom guesses are for, and as whom mail goes out where nothing else is set

    const check_request &request;
    const net::patience &patience;
    check_outcome outcome;
    bool ends_as_notes = false; // a failure is told as something to be known

private:
    const teller &tell_line;
    QString running;
};

// The failure in plain words, and what to do about it.
QString words_and_advice(const run_time_error &error);

}
