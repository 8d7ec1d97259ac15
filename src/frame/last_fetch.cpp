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

// One that did not get to its end must not read like one that did: mails may be left in the Inbox.
fetch_words words_of_broken(fetch_end how, const QDateTime &moment)
{
    const QString at = us_date_time(moment);
    if (how == fetch_end::unfilled)
        return {"Tables not filled " + short_moment(moment),
                "Mail was fetched " + at +
                    ", but not all of it could be put into its tables. The next fetch tries it again."};
    const QString rest = ". What was taken in until then stands; the next fetch takes the rest.";
    if (how == fetch_end::stopped)
        return {"Fetch stopped " + short_moment(moment), "You stopped fetching mail " + at + rest};
    return {"Fetch failed " + short_moment(moment), "Mail could not be fetched " + at + rest};
}

}

void note_fetch_end(fetch_end how)
{
    const bool is_whole = how == fetch_end::whole;
    if (is_whole)
        session.last_fetch = now();
    session.broken_fetch = is_whole ? QDateTime() : now();
    session.broken_fetch_end = how;
    mails_changed(); // whoever shows their number shows this too
}

fetch_words last_fetch_words()
{
    const QDateTime fetched = session.last_fetch;
    fetch_words whole;
    if (fetched.isValid())
        whole = {"Fetched " + short_moment(fetched), "Mail was last fetched " + us_date_time(fetched)};
    if (!session.broken_fetch.isValid())
        return whole;
    fetch_words words = words_of_broken(session.broken_fetch_end, session.broken_fetch);
    if (!whole.whole.isEmpty() && session.broken_fetch_end != fetch_end::unfilled)
        words.whole += "\n" + whole.whole + ".";
    return words;
}
