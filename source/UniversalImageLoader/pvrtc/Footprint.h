#pragma once

#include "PixelWindow.h"

namespace pvrtc {

/// How the pixels of a footprint may be modulated with the block itself in one of its modes. The lanes of a
/// row have what their blocks have; of rows there are three kinds: in the blocks above, in the block's own
/// row, in the blocks below.
template <int Bits>
struct LaneModes;

template <>
struct LaneModes<4> {
    alignas(32) std::int16_t punchThrough[3][8]; ///< masks
    /// A pixel of a punch-through block may be better off with alpha 0 than with any other value.
    bool punches;
};

template <>
struct LaneModes<2> {
    alignas(32) std::int16_t oneBit[3][16]; ///< masks: blocks that store one bit for every pixel
    /// Weights of the neighbours beside and of those above and below an interpolated pixel, of four in all.
    alignas(32) std::int16_t across[3][16];
    alignas(32) std::int16_t down[3][16];
    bool oneDirection; ///< of the block's own interpolation
};

/// A block's footprint as it is scored: the pixels that its colours reach, channel by channel, 16 bits a
/// lane. There are seven rows, from one above the block to two below it. With 4 bits a row is the seven
/// pixels from one left of the block on, and one empty lane; an eighth row is empty. With 2 bits a row is the
/// even columns from 4 left of the block on, then the odd columns from 3 left of it on, eight of each: one of
/// these halves has the stored pixels of an interpolating block, the other one the pixels in between. The
/// first lane is empty. Empty lanes are all zero: they cost nothing and weigh nothing.
template <int Bits>
struct Footprint {
    static constexpr int rows = 7;
    static constexpr int rowLanes = Bits == 2 ? 16 : 8;
    static constexpr int lanes = Bits == 2 ? rows * rowLanes : 64;
    /// Which kind of row one is.
    static constexpr int blockRow(int row) { return row < 1 ? 0 : row < 5 ? 1 : 2; }
    static constexpr int outsideRows = rows + 2;
    static constexpr int outsideColumns = 12;

    void load(const PixelWindow<Bits>& window, const BlockGrid& grid, int column, int row);

    /// Place in the window of a lane's pixel.
    static constexpr int windowX(int lane) { return Bits == 2 ? lane % 8 * 2 + lane % 16 / 8 : lane % 8 + 1; }
    static constexpr int windowY(int lane) { return lane / rowLanes + 1; }

    alignas(32) std::int16_t target[4][lanes];
    alignas(32) std::int16_t base[2][4][lanes]; ///< weighted sums of the other blocks' low and high colours
    alignas(32) std::int16_t weight[lanes];     ///< of the block's own colours
    LaneModes<Bits> modes[modeCount(Bits)];
    /// With 2 bits: the levels of stored pixels around the footprint, where they stand in Modulation::stored.
    std::int16_t outside[outsideRows][outsideColumns];
};

} // namespace pvrtc
