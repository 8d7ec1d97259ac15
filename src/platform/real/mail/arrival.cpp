#include "platform/real/mail/arrival.h"
#include "platform/clock.h"
#include "platform/real/mail/gmime_headers.h"

namespace mime {

namespace {

constexpr qsizetype longest_date = 100;
constexpr qint64 first_moment = 0;         // 1970: nothing was mailed before
constexpr qint64 last_moment = 4102444800; // 2100

QDateTime date_in(QByteArray text)
{
    text = text.trimmed().left(longest_date);
    if (text.isEmpty() || text.contains('\0'))
        return {};
    start_gmime();
    GDateTime *moment = g_mime_utils_header_decode_date(text.constData());
    if (!moment)
        return {};
    const qint64 seconds = g_date_time_to_unix(moment);
    g_date_time_unref(moment);
    return seconds > first_moment && seconds < last_moment ? wall_clock(seconds) : QDateTime();
}

}

QDateTime arrival_time(const header_block &head)
{
    const qsizetype semicolon = head.received.lastIndexOf(';');
    const QDateTime received = semicolon < 0 ? QDateTime() : date_in(head.received.sliced(semicolon + 1));
    return received.isValid() ? received : date_in(head.date);
}

}
