#pragma once

#include <array>
#include <cstdint>
#include <vector>

/// Red, green, blue (0 to 31) and alpha (0 to 15), as the format widens a stored colour before it blends.
using PvrtcColor = std::array<std::uint8_t, 4>;

/// The two base colours of a block: the one in the low half of its second word, then the one in the high
/// half.
using PvrtcColorPair = std::array<PvrtcColor, 2>;

/// Width of a block in pixels; all are 4 high and take 8 bytes.
constexpr int pvrtcBlockWidth(int bits) { return bits == 2 ? 8 : 4; }
inline constexpr int pvrtcBlockHeight = 4;
inline constexpr int pvrtcBlockBytes = 8;

/// The modulation levels of a stored two-bit value, in eighths of the way from the low colour to the high
/// one.
inline constexpr std::array<int, 4> pvrtcLevels{0, 3, 5, 8};
/// Those of the 4-bit punch-through mode, where value 2 has alpha 0.
inline constexpr std::array<int, 4> pvrtcPunchThroughLevels{0, 4, 4, 8};

/// The colours of a block's second word. Bit 0, the mode, doesn't count.
PvrtcColorPair pvrtcUnpackColors(std::uint32_t word);

/// The second word of a block with these colours, mode bit 0. Channels keep their top bits; full alpha makes
/// a colour opaque.
std::uint32_t pvrtcPackColors(const PvrtcColorPair& colors);

/// Index in the data of each block, row by row: Morton order with y in the even bits. In a grid whose sides
/// are no equal powers of two the blocks stand in the same order without gaps.
std::vector<std::uint32_t> pvrtcBlockOrder(int columns, int rows);

/// Where a value of 8 bits stands with red, green and blue or alpha of the four nearest blocks weighted and
/// summed up; weights add up to 16 with 4 bits a pixel and to 32 with 2 bits. `Sum`: an integer or a vector
/// of them.
template <class Sum>
constexpr Sum pvrtcBlend(Sum sum, bool isAlpha, int bits) {
    if (bits == 2)
        return isAlpha ? (sum >> 1) + (sum >> 5) : (sum >> 2) + (sum >> 7);
    return isAlpha ? sum + (sum >> 4) : (sum >> 1) + (sum >> 6);
}
