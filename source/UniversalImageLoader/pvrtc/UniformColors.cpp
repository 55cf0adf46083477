#include "UniformColors.h"

#include <cstdlib>

namespace pvrtc {

namespace {

/// What a field widens to.
std::uint8_t widened(int field, int bits) {
    const int missing = 5 - bits;
    return static_cast<std::uint8_t>(field << missing | field >> (bits - missing));
}

/// A channel's value where all blocks around have the same colours.
int blendedValue(int low, int high, int level, bool isAlpha) {
    const int lowValue = pvrtcBlend(low * 16, isAlpha, 4);
    const int highValue = pvrtcBlend(high * 16, isAlpha, 4);
    return (lowValue * (8 - level) + highValue * level) >> 3;
}

} // namespace

UniformColors::Ends UniformColors::bestEnds(int value, int level, Fields fields) {
    constexpr int lowBits[] = {5, 4, 4, 3, 3};
    constexpr int highBits[] = {5, 5, 4, 4, 3};
    const bool isAlpha = fields == Alpha;
    const auto end = [&](int field, int bits) {
        return isAlpha ? static_cast<std::uint8_t>(field * 2) : widened(field, bits);
    };
    Ends best{};
    int bestCost = 1 << 30;
    for (int lowField = 0; lowField < 1 << lowBits[fields]; ++lowField)
        for (int highField = 0; highField < 1 << highBits[fields]; ++highField) {
            const Ends ends{end(lowField, lowBits[fields]), end(highField, highBits[fields])};
            const int miss = std::abs(blendedValue(ends.low, ends.high, level, isAlpha) - value);
            // Of equal ones the closest: what lies next to the area gets blended with them.
            const int cost = miss * 64 + std::abs(ends.low - ends.high);
            if (cost < bestCost) {
                bestCost = cost;
                best = ends;
            }
        }
    return best;
}

UniformColors::UniformColors() {
    for (int which = 0; which < 2; ++which)
        for (int fields = 0; fields < FieldsCount; ++fields)
            for (int value = 0; value < 256; ++value)
                m_ends[which][fields][value] =
                    bestEnds(value, which == 0 ? 3 : 5, static_cast<Fields>(fields));
}

PvrtcColorPair UniformColors::pair(std::uint32_t color, int level) const {
    const std::uint32_t alpha = color >> 24U;
    // 238 is the largest alpha of a colour that isn't opaque.
    const bool opaque = alpha > (238 + 255) / 2;
    const auto& ends = m_ends[level == 3 ? 0 : 1];
    PvrtcColorPair pair;
    for (std::size_t channel = 0; channel < 3; ++channel) {
        const Fields fields =
            channel < 2 ? (opaque ? FiveAndFive : FourAndFour) : (opaque ? FourAndFive : ThreeAndFour);
        const Ends& found = ends[fields][color >> 8 * channel & 0xFFU];
        pair[0][channel] = found.low;
        pair[1][channel] = found.high;
    }
    pair[0][3] = opaque ? 15 : ends[Alpha][alpha].low;
    pair[1][3] = opaque ? 15 : ends[Alpha][alpha].high;
    return pair;
}

} // namespace pvrtc
