#include "frame/auto_fetch.h"
#include "frame/store.h"
#include "frame/text.h"
#include "platform/clock.h"

#include <algorithm>

namespace {

constexpr int first_pause_s = 10;
constexpr int longest_pause_s = 300;

qint16 read_minutes()
{
    ado::Recordset rows;
    rows.Open("select * from autofetch", *session.store_connection);
    return rows.EOF_() ? qint16(0) : to_int16(QString::number(rows["minutes"].to_number()));
}

// A clock that was set back must not make a pause of hours.
bool pause_lasts()
{
    if (session.auto_fetch_pause_s == 0)
        return false;
    const QDateTime moment = now();
    return moment >= session.auto_fetch_missed &&
           moment < session.auto_fetch_missed.addSecs(session.auto_fetch_pause_s);
}

}

void pause_auto_fetch()
{
    session.auto_fetch_pause_s =
        session.auto_fetch_pause_s == 0 ? first_pause_s : std::min(session.auto_fetch_pause_s * 2, longest_pause_s);
    session.auto_fetch_missed = now();
}

void end_auto_fetch_pause()
{
    session.auto_fetch_pause_s = 0;
}

bool auto_fetch_due()
{
    if (pause_lasts())
        return false;
    open_store_if_closed();
    const qint16 minutes = read_minutes();
    if (minutes <= 0)
        return false;
    session.autofetch_minutes = minutes;
    int tick_count = 0; // starts empty at each tick, on purpose: only 1 ever matches
    ++tick_count;
    return tick_count == session.autofetch_minutes;
}
