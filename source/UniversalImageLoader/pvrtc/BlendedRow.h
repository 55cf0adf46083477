#pragma once

#include "PvrtcFormat.h"
#include "Simd.h"

#include <span>

namespace pvrtc {

/// The two colours that a pixel is modulated between: red, green, blue, alpha (0 to 255) of the low one, then
/// of the high one.
using PixelEnds = Int16x8;

/// Blends the colours of the four nearest blocks for the pixels of one row. `above` and `below`: the rows of
/// blocks whose centres are nearest; `place` is how far below the centres of the upper ones the pixels lie, 0
/// to 3. Wraps around at the ends; `ends` takes as many pixels as the blocks are wide together.
template <int Bits>
void blendRow(std::span<const PvrtcColorPair> above, std::span<const PvrtcColorPair> below, int place,
              PixelEnds* ends);

/// A pair of colours, weighted.
inline Int16x8 weighted(const PvrtcColorPair& colors, int weight) {
    return loadBytes(&colors) * static_cast<std::int16_t>(weight);
}

/// The ends of a pixel where the weighted colours of the blocks that reach it add up to `sum`.
template <int Bits>
PixelEnds blendedEnds(Int16x8 sum) {
    constexpr Int16x8 isAlpha = {0, 0, 0, -1, 0, 0, 0, -1};
    return (pvrtcBlend(sum, true, Bits) & isAlpha) | (pvrtcBlend(sum, false, Bits) & ~isAlpha);
}

inline Int16x8 lowTwice(PixelEnds ends) {
    return __builtin_shufflevector(ends, ends, 0, 1, 2, 3, 0, 1, 2, 3);
}
inline Int16x8 highTwice(PixelEnds ends) {
    return __builtin_shufflevector(ends, ends, 4, 5, 6, 7, 4, 5, 6, 7);
}

/// What becomes of a pixel at so many eighths, in the lower half: floor(((8 - level) * low + level * high) /
/// 8).
inline Int16x8 modulated(PixelEnds ends, std::int16_t level) {
    return ends + (((highTwice(ends) - ends) * level) >> 3);
}

/// The best of the levels 0, 3, 5, 8, or of 0 and 8 alone: the picture's place between the two colours is
/// `place` / (16 * square), and the middles of two levels lie at 3, 8 and 13 sixteenths. Ties go to 5, then
/// 3, then 0, then 8; of two to 8.
constexpr int nearestLevel(std::int32_t place, std::int32_t square, bool twoLevels) {
    if (twoLevels)
        return place >= 8 * square ? 8 : 0;
    return place > 13 * square ? 8 : place >= 8 * square ? 5 : place >= 3 * square ? 3 : 0;
}

/// The picture's place on the way from the low to the high colour is dot / square.
struct PixelPlace {
    PixelPlace(PixelEnds ends, Int16x8 target) {
        const Int16x8 span = highTwice(ends) - lowTwice(ends);
        const Int16x8 difference = target - lowTwice(ends);
        const Int16x8 both = __builtin_shufflevector(difference, span, 0, 1, 2, 3, 8, 9, 10, 11);
        const Int32x4 products = multiplyAddPairs(both, span);
        dot = products[0] + products[1];
        square = products[2] + products[3];
    }
    std::int32_t dot;
    std::int32_t square;
};

} // namespace pvrtc
