#include "jobs/fetch_job.h"
#include "frame/session.h"
#include "intake/fetch.h"
#include "intake/mail_source.h"

#include <cstdio>

int fetch_job()
{
    session.no_fetch = false;
    intake::fetch_and_parse();
    const QString summary = intake::fetch_summary();
    intake::close_mail_source();
    if (session.err_number != 0) { // the last of those that the log holds
        std::fprintf(stderr, "%s: %s\n", qPrintable(session.err_routine), qPrintable(session.err_description));
        return 1;
    }
    std::printf("%s\n", qPrintable(summary));
    return 0;
}
