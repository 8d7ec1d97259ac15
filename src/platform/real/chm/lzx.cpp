#include "platform/real/chm/lzx.h"
#include "platform/real/chm/lzx_bits.h"

namespace {

constexpr int lzx_literals = 256;
constexpr int lzx_length_codes = 249;
constexpr int lzx_shortest_match = 2;
constexpr int lzx_longest_short = 7; // a longer match has a code of its own for the rest

enum class lzx_block { none, verbatim, aligned, stored };

// How a distance is written: a slot, and so many bits behind it.
struct lzx_slot {
    unsigned base = 0;
    int extra = 0;
};

const std::array<lzx_slot, 50> &lzx_slots()
{
    static const std::array<lzx_slot, 50> all = [] {
        std::array<lzx_slot, 50> made;
        unsigned base = 0;
        for (int slot = 0; slot < 50; ++slot) {
            const int extra = slot < 4 ? 0 : qMin(17, slot / 2 - 1);
            made[size_t(slot)] = {base, extra};
            base += 1U << extra;
        }
        return made;
    }();
    return all;
}

int slots_of_window(int bits)
{
    return bits < 20 ? bits * 2 : bits == 20 ? 42 : 50;
}

class lzx_stretch {
public:
    lzx_stretch(QByteArrayView packed, qsizetype wanted, int window_bits)
        : bits(packed),
          length(wanted),
          window(qsizetype(1) << window_bits),
          main_lengths(size_t(lzx_literals + 8 * slots_of_window(window_bits)))
    {
    }

    std::optional<QByteArray> unpack();

private:
    bool begin_block();
    bool read_codes();
    bool read_lengths(std::span<quint8> lengths);
    bool repeat_length(std::span<quint8> lengths, size_t &at, size_t times, int delta);
    bool unpack_run(qsizetype end);
    bool copy_stored(qsizetype end);
    bool copy_match(int symbol, qsizetype end);
    std::optional<unsigned> distance_of(int slot);

    chm::lzx_bits bits;
    const qsizetype length;
    const qsizetype window;
    QByteArray out;
    lzx_block block = lzx_block::none;
    qsizetype block_left = 0;
    bool is_padded = false; // a stored block of odd length
    std::array<unsigned, 3> last_distances{1, 1, 1};
    std::vector<quint8> main_lengths; // kept: the next block tells only the differences
    std::array<quint8, lzx_length_codes> rest_lengths{};
    chm::lzx_codes main_codes;
    chm::lzx_codes rest_codes;
    chm::lzx_codes aligned_codes;
};

std::optional<QByteArray> lzx_stretch::unpack()
{
    if (bits.take(1)) // calls of machine code are rewritten: never in a help file
        return {};
    while (out.size() < length) {
        if (block_left == 0 && !begin_block())
            return {};
        const qsizetype frame_end = (out.size() / chm::lzx_frame + 1) * chm::lzx_frame;
        const qsizetype end = qMin(qMin(frame_end, length), out.size() + block_left);
        const qsizetype before = out.size();
        if (!(block == lzx_block::stored ? copy_stored(end) : unpack_run(end)) || bits.ended())
            return {};
        block_left -= out.size() - before;
        if (out.size() == frame_end)
            bits.skip_to_word();
    }
    return out;
}

bool lzx_stretch::begin_block()
{
    if (is_padded)
        bits.bytes(1);
    is_padded = false;
    block = lzx_block(bits.take(3));
    block_left = qsizetype(bits.take(16)) << 8;
    block_left |= qsizetype(bits.take(8));
    if (block_left == 0 || bits.ended())
        return false;
    if (block == lzx_block::verbatim || block == lzx_block::aligned)
        return read_codes();
    if (block != lzx_block::stored)
        return false;
    is_padded = block_left % 2;
    bits.skip_before_bytes();
    for (unsigned &distance : last_distances) {
        const QByteArrayView four = bits.bytes(4);
        if (four.isEmpty())
            return false;
        distance = qFromLittleEndian<quint32>(four.data());
    }
    return true;
}

bool lzx_stretch::read_codes()
{
    if (block == lzx_block::aligned) {
        std::array<quint8, 8> lengths{};
        for (quint8 &one : lengths)
            one = quint8(bits.take(3));
        if (!aligned_codes.set(lengths))
            return false;
    }
    const std::span<quint8> main(main_lengths);
    return read_lengths(main.first(lzx_literals)) && read_lengths(main.subspan(lzx_literals)) && main_codes.set(main) &&
           read_lengths(rest_lengths) && rest_codes.set(rest_lengths);
}

// The lengths are packed themselves, as differences from those of the block before.
bool lzx_stretch::read_lengths(std::span<quint8> lengths)
{
    std::array<quint8, 20> own{};
    for (quint8 &one : own)
        one = quint8(bits.take(4));
    chm::lzx_codes codes;
    if (!codes.set(own))
        return false;
    for (size_t at = 0; at < lengths.size();) {
        const int said = codes.next(bits);
        bool good = said >= 0 && !bits.ended();
        if (said == 17 || said == 18) {
            const size_t zeros = said == 17 ? 4 + bits.take(4) : 20 + bits.take(5);
            good = zeros <= lengths.size() - at;
            for (size_t done = 0; good && done < zeros; ++done)
                lengths[at++] = 0;
        } else if (said == 19) {
            const size_t times = 4 + bits.take(1);
            good = repeat_length(lengths, at, times, codes.next(bits));
        } else if (good) {
            good = repeat_length(lengths, at, 1, said);
        }
        if (!good)
            return false;
    }
    return true;
}

bool lzx_stretch::repeat_length(std::span<quint8> lengths, size_t &at, size_t times, int delta)
{
    if (delta < 0 || delta > chm::lzx_codes::longest || times > lengths.size() - at)
        return false;
    const auto value = quint8((lengths[at] + 17 - delta) % 17);
    for (size_t done = 0; done < times; ++done)
        lengths[at++] = value;
    return true;
}

bool lzx_stretch::copy_stored(qsizetype end)
{
    out += bits.bytes(end - out.size());
    return true; // too few: the bits have ended
}

bool lzx_stretch::unpack_run(qsizetype end)
{
    while (out.size() < end) {
        const int symbol = main_codes.next(bits);
        if (symbol < 0 || bits.ended())
            return false;
        if (symbol < lzx_literals)
            out += char(symbol);
        else if (!copy_match(symbol - lzx_literals, end))
            return false;
    }
    return true;
}

bool lzx_stretch::copy_match(int symbol, qsizetype end)
{
    int match = symbol % 8;
    if (match == lzx_longest_short) {
        const int rest = rest_codes.next(bits);
        if (rest < 0)
            return false;
        match += rest;
    }
    match += lzx_shortest_match;
    const auto distance = distance_of(symbol / 8);
    if (!distance || *distance == 0 || *distance > window || *distance > out.size())
        return false;
    if (end == length) // the packer fills its last frame up with something
        match = int(qMin<qsizetype>(match, end - out.size()));
    if (match > end - out.size())
        return false;
    for (int done = 0; done < match; ++done)
        out += out[out.size() - qsizetype(*distance)]; // may reach into what it has just written
    return true;
}

std::optional<unsigned> lzx_stretch::distance_of(int slot)
{
    if (slot < 3) {
        std::swap(last_distances[0], last_distances[size_t(slot)]);
        return last_distances[0];
    }
    const auto [base, extra] = lzx_slots()[size_t(slot)];
    unsigned distance = base - 2;
    if (block == lzx_block::aligned && extra >= 3) {
        distance += bits.take(extra - 3) << 3;
        const int low = aligned_codes.next(bits);
        if (low < 0)
            return {};
        distance += unsigned(low);
    } else {
        distance += bits.take(extra);
    }
    last_distances = {distance, last_distances[0], last_distances[1]};
    return distance;
}

}

std::optional<QByteArray> chm::unpack_lzx(QByteArrayView packed, qsizetype length, int window_bits)
{
    if (window_bits < 15 || window_bits > 21)
        return {};
    return lzx_stretch(packed, length, window_bits).unpack();
}
