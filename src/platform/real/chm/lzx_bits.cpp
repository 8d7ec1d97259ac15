#include "platform/real/chm/lzx_bits.h"

bool chm::lzx_codes::set(std::span<const quint8> lengths)
{
    count.fill(0);
    for (const quint8 length : lengths)
        ++count[length];
    int room = 1;
    for (int length = 1; length <= longest; ++length) {
        room = room * 2 - count[size_t(length)];
        if (room < 0)
            return false;
    }
    std::array<int, longest + 2> place{};
    for (size_t length = 1; length <= longest; ++length)
        place[length + 1] = place[length] + count[length];
    symbols.assign(lengths.size(), 0);
    for (size_t symbol = 0; symbol < lengths.size(); ++symbol) {
        if (lengths[symbol])
            symbols[size_t(place[lengths[symbol]]++)] = int(symbol);
    }
    return true;
}

int chm::lzx_codes::next(lzx_bits &bits) const
{
    int code = 0;
    int first = 0; // the first code of this length
    int before = 0;
    for (size_t length = 1; length <= longest; ++length) {
        code = code * 2 + int(bits.take(1));
        if (code - first < count[length])
            return symbols[size_t(before + code - first)];
        before += count[length];
        first = (first + count[length]) * 2;
    }
    return -1;
}
