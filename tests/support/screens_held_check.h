// What stands in for the check of the page's Test button: it says its lines and then waits until it is let go, or given
// up.
#pragma once
#include "screens/preferences/check_thread.h"
#include <QSemaphore>

struct held_check {
    QSemaphore go;
    mail::check_request asked;
    check_thread::routine routine()
    {
        return [this](const mail::check_request &request, const net::patience &patience, const auto &tell) {
            asked = request;
            tell({"Mail server", mail::check_state::running, {}});
            mail::check_outcome outcome;
            while (!go.tryAcquire(1, 5))
                if (patience.give_up()) {
                    outcome.cancelled = true;
                    return outcome;
                }
            tell({"Mail server", mail::check_state::good, "imap.shop.example answers."});
            tell({"Sending", mail::check_state::failed, "The password was not taken."});
            outcome.receives = true;
            outcome.found = request.settings;
            outcome.found.incoming.host = "imap.shop.example";
            return outcome;
        };
    }
};
