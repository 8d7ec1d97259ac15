#include "platform/real/outbox/mailing_rate.h"
#include "platform/real/durable_file.h"
#include <QFile>
#include <cmath>
#include <limits>

namespace outbox {

namespace {

const QString rate_file = QStringLiteral("mailings.rate");
constexpr double an_hour_in_seconds = 3600;
constexpr double at_once = 1.0 / 6;
constexpr double nearly = 1e-6; // of what adding up has rounded away

}

mailing_rate::mailing_rate(const QString &in_folder, int an_hour)
    : folder(in_folder), limit(an_hour), most(qMax(1.0, an_hour * at_once)), tokens(most)
{
    QFile file(folder + u'/' + rate_file);
    if (limit == 0 || !file.open(QIODevice::ReadOnly))
        return;
    const QByteArrayList words = file.readAll().trimmed().split(' ');
    bool is_number = false, is_moment = false;
    const double left = words.value(0).toDouble(&is_number);
    const qint64 then = words.value(1).toLongLong(&is_moment);
    if (!is_number || !is_moment || !std::isfinite(left))
        return;
    tokens = qBound(0.0, left, most);
    at = then;
}

void mailing_rate::fill(qint64 seconds)
{
    if (at > 0 && seconds > at)
        tokens = qMin(most, tokens + double(seconds - at) * limit / an_hour_in_seconds);
    at = seconds; // of a clock that was set back, too: nothing is given for that
}

qsizetype mailing_rate::allowed(qint64 seconds)
{
    if (limit == 0)
        return std::numeric_limits<qsizetype>::max();
    fill(seconds);
    return qsizetype(tokens + nearly);
}

void mailing_rate::note_one(qint64 seconds)
{
    if (limit == 0)
        return;
    fill(seconds);
    tokens = qMax(0.0, tokens - 1);
    replace_durably(folder, {rate_file, QByteArray::number(tokens, 'f', 4) + ' ' + QByteArray::number(at) + '\n'});
}

qint64 mailing_rate::next_moment(qint64 seconds)
{
    if (allowed(seconds) > 0)
        return seconds;
    return seconds + qint64(std::ceil((1 - tokens) * an_hour_in_seconds / limit));
}

}
