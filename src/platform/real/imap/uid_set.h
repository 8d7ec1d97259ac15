// Sets of UIDs as IMAP writes them: "1:5,7".
#pragma once
#include <QByteArray>
#include <QByteArrayView>
#include <vector>

namespace imap {

struct uid_range {
    quint32 first = 0, last = 0;
    bool operator==(const uid_range &) const = default;
};

QByteArray uid_set(const std::vector<quint32> &ascending);

// Sorted, without overlapping; what is no set is left out. "*" is not a number of what a server says.
std::vector<uid_range> ranges_in(QByteArrayView set);
bool holds(const std::vector<uid_range> &sorted, quint32 uid);

}
