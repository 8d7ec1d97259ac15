#include "frame/auto_fetch.h"
#include "frame/store.h"
#include "frame/text.h"
#include "platform/clock.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int first_pause_s = 10;
constexpr int longest_pause_s = 300;
constexpr double most_minutes = 32767;

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

// A fraction, and what the tick could not read again, is no number of minutes.
typed_minutes read_typed_minutes(const QString &typed)
{
    const QString plain = plain_number(typed);
    const double number = plain.toDouble();
    if (plain.isEmpty() || number != std::floor(number) || number > most_minutes)
        return {0, "Minutes can only be numeric!"};
    if (number <= 0)
        return {0, "Minutes should be greater than zero!"};
    return {int(number), {}};
}

std::optional<int> kept_minutes()
{
    ado::Recordset rows;
    rows.Open("select * from autofetch", *session.store_connection);
    const int minutes = rows.EOF_() ? auto_fetch_off : int(rows["minutes"].to_number());
    rows.Close();
    return minutes == auto_fetch_off ? std::nullopt : std::optional(minutes);
}

bool keep_minutes(int minutes)
{
    run_sql("Update autofetch set minutes=" + QString::number(minutes));
    return finds_row("select * from autofetch");
}

QString auto_fetch_words(std::optional<int> minutes)
{
    if (minutes == 1)
        return "Mail is fetched by itself every ten seconds, but not while the Mail Auditor is open.";
    return "Mail is not fetched by itself.";
}
