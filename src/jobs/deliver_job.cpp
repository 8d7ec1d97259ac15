#include "jobs/deliver_job.h"
#include "frame/error_log.h"
#include "frame/session.h"
#include "platform/mail_delivery.h"

#include <cstdio>

int deliver_job()
{
    delivery::report done;
    if (!guarded("deliver_job", "deliver", [&] { done = delivery::deliver_all(net::present_patience()); })) {
        std::fprintf(stderr, "%s\n", qPrintable(session.err_description));
        std::printf("%s\n", qPrintable(delivery::present().line));
        return 1;
    }
    std::printf("%d sent\n", done.sent);
    if (!done.line.isEmpty())
        std::fprintf(done.left.waiting > 0 ? stderr : stdout, "%s\n", qPrintable(done.line));
    return done.left.waiting > 0 ? 1 : 0;
}
