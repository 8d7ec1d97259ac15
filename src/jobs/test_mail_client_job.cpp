#include "jobs/test_mail_client_job.h"
#include "platform/mail_client_check.h"
#include "platform/passwords.h"

#include <cstdio>

namespace {

const char *word_for(mail::check_state state)
{
    switch (state) {
    case mail::check_state::good:
        return "good";
    case mail::check_state::warning:
        return "warning";
    case mail::check_state::failed:
        return "failed";
    case mail::check_state::skipped:
        return "skipped";
    case mail::check_state::running:
        break;
    }
    return "";
}

void print_end(const mail::check_line &line)
{
    if (line.state == mail::check_state::running)
        return;
    std::printf("%-8s %s: %s\n", word_for(line.state), qPrintable(line.step), qPrintable(line.words));
    std::fflush(stdout);
}

}

int test_mail_client_job()
{
    mail::check_request request;
    request.settings = mail::read_client_settings();
    request.password = passwords::read(passwords::of::mailbox);
    request.smtp_password = passwords::read(passwords::of::sending);
    request.address = request.settings.from;
    const mail::check_outcome outcome = mail::check_mail_client(request, net::present_patience(), print_end);
    const bool keeps = request.settings.sending == mail::send_by::keep;
    return outcome.receives && (outcome.sends || keeps) ? 0 : 1;
}
