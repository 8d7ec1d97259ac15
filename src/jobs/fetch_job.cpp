#include "jobs/fetch_job.h"
#include "frame/session.h"
#include "frame/status.h"
#include "intake/fetch.h"
#include "intake/mail_source.h"

#include <cstdio>

int fetch_job()
{
    session.no_fetch = false;
    const bool done = intake::fetch_and_parse();
    if (done)
        std::printf("%s\n", qPrintable(intake::fetch_summary()));
    intake::close_mail_source();
    if (!session.err_description.isEmpty())
        std::fprintf(stderr, "%s: %s\n", qPrintable(session.err_routine), qPrintable(session.err_description));
    return done ? 0 : 1;
}
