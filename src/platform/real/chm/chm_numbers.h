// The numbers in a .chm: of a fixed length, and short ones of seven bits a byte. All reading stays inside its bytes.
#pragma once
#include <QByteArrayView>
#include <QtEndian>

namespace chm {

// -1 where there are not so many bytes.
inline qint64 number32(QByteArrayView bytes, qsizetype at)
{
    return at < 0 || bytes.size() - at < 4 ? -1 : qint64(qFromLittleEndian<quint32>(bytes.data() + at));
}

inline qint64 number64(QByteArrayView bytes, qsizetype at)
{
    return at < 0 || bytes.size() - at < 8 ? -1 : qFromLittleEndian<qint64>(bytes.data() + at);
}

class short_numbers {
public:
    explicit short_numbers(QByteArrayView bytes) : from(bytes) {}

    qint64 next()
    {
        qint64 number = 0;
        for (int bytes_read = 0; bytes_read < 8 && !at_end(); ++bytes_read) {
            const auto byte = quint8(from[at++]);
            number = number << 7 | (byte & 0x7f);
            if (byte < 0x80)
                return number;
        }
        has_failed = true;
        return 0;
    }

    QByteArrayView bytes(qint64 count)
    {
        if (count < 0 || count > from.size() - at) {
            has_failed = true;
            at = from.size();
            return {};
        }
        at += count;
        return from.sliced(at - count, count);
    }

    bool at_end() const { return at >= from.size(); }
    bool failed() const { return has_failed; }

private:
    QByteArrayView from;
    qsizetype at = 0;
    bool has_failed = false;
};

}
