// What the unpacker reads with: bits out of little-endian words, the highest first, and Huffman codes of them.
#pragma once
#include <QByteArrayView>
#include <QtEndian>
#include <array>
#include <span>
#include <vector>

namespace chm {

class lzx_bits {
public:
    explicit lzx_bits(QByteArrayView packed) : from(packed) {}

    // Behind the end come zeros, and ended() is true.
    unsigned take(int count)
    {
        while (have < count)
            take_word();
        have -= count;
        return unsigned(buffer >> have) & ((1U << count) - 1);
    }

    void skip_to_word() { have = 0; }

    // What follows a stored block's head is bytes: a word is given up, the begun one if one is begun.
    void skip_before_bytes()
    {
        if (have == 0)
            take_word();
        have = 0;
    }

    QByteArrayView bytes(qsizetype count)
    {
        if (count > from.size() - at) {
            is_past_end = true;
            return {};
        }
        at += count;
        return from.sliced(at - count, count);
    }

    bool ended() const { return is_past_end; }

private:
    void take_word()
    {
        buffer <<= 16;
        have += 16;
        if (from.size() - at >= 2)
            buffer |= qFromLittleEndian<quint16>(from.data() + at);
        else
            is_past_end = true;
        at += 2;
        at = qMin(at, from.size());
    }

    QByteArrayView from;
    qsizetype at = 0;
    quint64 buffer = 0;
    int have = 0; // bits of the buffer that are not taken yet
    bool is_past_end = false;
};

// Codes in the order of their lengths, then of their symbols.
class lzx_codes {
public:
    static constexpr int longest = 16;

    // False: more codes than there is room for. No code at all is fine as long as none is asked for.
    bool set(std::span<const quint8> lengths);
    int next(lzx_bits &bits) const; // -1: no such code

private:
    std::array<int, longest + 1> count{};
    std::vector<int> symbols;
};

}
