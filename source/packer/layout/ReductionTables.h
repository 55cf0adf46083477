#pragma once

#include <QtGlobal>

#include <array>
#include <cstddef>

/// What an 8-bit channel value becomes in a channel of fewer bits, expanded to 8 bits again.
using ReductionTable = std::array<quint8, 256>;

/// Level `level` of `bits` bits (1 to 8) as 8 bits: the bit pattern repeated until all bits are filled.
constexpr int expandedLevel(int level, int bits) {
    int filled = level << (8 - bits);
    for (int shift = bits; shift < 8; shift += bits)
        filled |= (level << (8 - bits)) >> shift;
    return filled;
}

/// Drops the low bits.
constexpr ReductionTable linearTable(int bits) {
    ReductionTable table{};
    for (int value = 0; value < 256; ++value)
        table[static_cast<std::size_t>(value)] =
            static_cast<quint8>(expandedLevel(value >> (8 - bits), bits));
    return table;
}

/// Takes the nearest level, the lower one of two that are equally near.
constexpr ReductionTable nearestTable(int bits) {
    ReductionTable table{};
    int level = 0;
    for (int value = 0; value < 256; ++value) {
        while (level + 1 < 1 << bits &&
               expandedLevel(level + 1, bits) - value < value - expandedLevel(level, bits))
            ++level;
        table[static_cast<std::size_t>(value)] = static_cast<quint8>(expandedLevel(level, bits));
    }
    return table;
}

/// All values as they are, and all values to 255.
constexpr ReductionTable identityTable() { return linearTable(8); }

constexpr ReductionTable opaqueTable() {
    ReductionTable table{};
    for (quint8& value : table)
        value = 255;
    return table;
}
