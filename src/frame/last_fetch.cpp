#include "frame/last_fetch.h"
#include "frame/session.h"
#include "frame/status.h"
#include "frame/text.h"
#include "platform/clock.h"

namespace {

// Today's fetch needs no date.
QString short_moment(const QDateTime &moment)
{
    const QString whole = us_date_time(moment);
    return moment.date() == today() ? whole.section(u' ', 1) : whole;
}

}

void note_fetch_end(fetch_end how)
{
    const bool is_whole = how == fetch_end::whole;
    (is_whole ? session.last_fetch : session.broken_fetch) = now();
    if (is_whole)
        session.broken_fetch = {};
    session.fetch_was_stopped = how == fetch_end::stopped;
    mails_changed(); // whoever shows their number shows this too
}

// One that did not get to its end must not read like one that did: mails may be left in the Inbox.
fetch_words last_fetch_words()
{
    const QDateTime fetched = session.last_fetch;
    const QDateTime broken = session.broken_fetch;
    fetch_words words;
    if (fetched.isValid())
        words = {"Fetched " + short_moment(fetched), "Mail was last fetched " + us_date_time(fetched)};
    if (!broken.isValid())
        return words;
    const bool by_user = session.fetch_was_stopped;
    words.line = (by_user ? "Fetch stopped " : "Fetch failed ") + short_moment(broken);
    const QString sentences = (by_user ? "You stopped fetching mail " : "Mail could not be fetched ") +
                              us_date_time(broken) +
                              ". What was taken in until then stands; the next fetch takes the rest.";
    words.whole = words.whole.isEmpty() ? sentences : sentences + "\n" + words.whole + ".";
    return words;
}
