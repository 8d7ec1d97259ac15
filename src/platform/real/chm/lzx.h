// The packing inside a .chm: Lempel-Ziv over a window, its literals and distances in Huffman codes.
#pragma once
#include <QByteArray>
#include <QByteArrayView>
#include <optional>

namespace chm {

constexpr qsizetype lzx_frame = 0x8000; // after so many bytes the packer begins at a whole word again

// Unpacks one stretch, which begins with nothing known, to exactly so many bytes. Nothing: the stretch is damaged.
std::optional<QByteArray> unpack_lzx(QByteArrayView packed, qsizetype length, int window_bits);

}
