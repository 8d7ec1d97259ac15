#include "platform/real/imap/uid_set.h"
#include <algorithm>

namespace imap {

namespace {

quint32 uid_in(QByteArrayView text)
{
    bool good = false;
    const quint32 uid = text.toUInt(&good);
    return good ? uid : 0;
}

}

QByteArray uid_set(const std::vector<quint32> &uids)
{
    QByteArray set;
    for (size_t from = 0; from < uids.size();) {
        size_t to = from;
        while (to + 1 < uids.size() && uids[to + 1] == uids[to] + 1)
            ++to;
        if (!set.isEmpty())
            set += ',';
        set += QByteArray::number(uids[from]);
        if (to > from)
            set += ':' + QByteArray::number(uids[to]);
        from = to + 1;
    }
    return set;
}

std::vector<uid_range> ranges_in(QByteArrayView set)
{
    std::vector<uid_range> found;
    while (!set.isEmpty()) {
        const qsizetype comma = set.indexOf(',');
        const QByteArrayView piece = comma < 0 ? set : set.first(comma);
        set = comma < 0 ? QByteArrayView() : set.sliced(comma + 1);
        const qsizetype colon = piece.indexOf(':');
        const quint32 one = uid_in(colon < 0 ? piece : piece.first(colon));
        const quint32 other = colon < 0 ? one : uid_in(piece.sliced(colon + 1));
        if (one != 0 && other != 0)
            found.push_back({qMin(one, other), qMax(one, other)});
    }
    std::sort(found.begin(), found.end(), [](const auto &a, const auto &b) { return a.first < b.first; });
    std::vector<uid_range> joined;
    for (const uid_range &next : found) {
        if (!joined.empty() && next.first <= joined.back().last)
            joined.back().last = qMax(joined.back().last, next.last);
        else
            joined.push_back(next);
    }
    return joined;
}

bool holds(const std::vector<uid_range> &sorted, quint32 uid)
{
    const auto behind = std::upper_bound(sorted.begin(), sorted.end(), uid,
                                         [](quint32 number, const uid_range &range) { return number < range.first; });
    return behind != sorted.begin() && uid <= std::prev(behind)->last;
}

}
