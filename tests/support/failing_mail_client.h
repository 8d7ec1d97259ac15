// A mail client with folders whose server is not there: each try to reach it fails as told, or waits until the user
// cancels. Knows no mails.
#pragma once
#include "platform/mail_client.h"
#include "platform/network.h"

class failing_mail_client : public outlook::mail_client_service {
public:
    run_time_error failure =
        net::failure(net::trouble::not_reached, QStringLiteral("Nobody answers at imap.example.org, port 993."));
    bool waits_for_cancel = false;
    int tries = 0;
    net::patience asked_with; // of the last try

    std::unique_ptr<outlook::Application> GetObject() override { return nullptr; }
    std::unique_ptr<outlook::Application> CreateObject() override
    {
        ++tries;
        asked_with = net::present_patience();
        if (!waits_for_cancel)
            throw failure;
        while (!asked_with.give_up()) {
        }
        throw net::failure(net::trouble::cancelled, QStringLiteral("Cancelled."));
    }
};
