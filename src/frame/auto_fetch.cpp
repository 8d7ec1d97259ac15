#include "frame/auto_fetch.h"
#include "frame/store.h"
#include "frame/text.h"

namespace {

qint16 read_minutes()
{
    ado::Recordset rows;
    rows.Open("select * from autofetch", *session.store_connection);
    return rows.EOF_() ? qint16(0) : to_int16(QString::number(rows["minutes"].to_number()));
}

}

bool auto_fetch_due()
{
    open_store_if_closed();
    const qint16 minutes = read_minutes();
    if (minutes <= 0)
        return false;
    session.autofetch_minutes = minutes;
    int tick_count = 0; // starts empty at each tick, on purpose: only 1 ever matches
    ++tick_count;
    return tick_count == session.autofetch_minutes;
}
