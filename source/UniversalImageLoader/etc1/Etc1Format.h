#pragma once

#include <array>
#include <cstdint>

// What encoder and decoder share of the ETC1 block (OES_compressed_ETC1_RGB8_texture). It has two big-endian
// words: the first holds colours and tables of the two halves, the second an index for each pixel.

/// A table of modifiers. A pixel adds one of four to all channels of its half's colour.
struct Etc1Table {
    int small;
    int large;

    /// By the index of a pixel: bit 0 chooses the large modifier, bit 1 the negative one.
    constexpr int modifier(unsigned index) const {
        const int amount = (index & 1) != 0 ? large : small;
        return (index & 2) != 0 ? -amount : amount;
    }
};

inline constexpr std::array<Etc1Table, 8> etc1Tables = {
    {{2, 8}, {5, 17}, {9, 29}, {13, 42}, {18, 60}, {24, 80}, {33, 106}, {47, 183}}};

inline constexpr std::uint32_t etc1FlipBit = 1;         ///< the halves are stacked, not side by side
inline constexpr std::uint32_t etc1DifferentialBit = 2; ///< the second colour is a difference to the first
inline constexpr std::array<int, 2> etc1TableShifts = {5, 2}; ///< the table of each half, 3 bits

/// A byte with both colours' bits of red, green or blue. The first colour has the upper ones.
constexpr int etc1ColorShift(int channel) { return 24 - 8 * channel; }

/// The low bit of the index of pixel (x, y); the high bit is 16 above it.
constexpr int etc1IndexShift(int x, int y) { return 4 * x + y; }

/// 4 or 5 bits to 8, by repetition; for numbers and vectors of them.
template <typename T>
constexpr T etc1Widen4(const T& value) {
    return value << 4 | value;
}
template <typename T>
constexpr T etc1Widen5(const T& value) {
    return value << 3 | value >> 2;
}
