#include "PvrtcFormat.h"

namespace {

constexpr std::uint32_t opaqueBit = 1U << 15U;
constexpr std::uint8_t fullAlpha = 15;

/// A field of the word, repeated below itself until it has five bits.
std::uint8_t widened(std::uint32_t word, unsigned position, unsigned bits) {
    const std::uint32_t value = word >> position & ((1U << bits) - 1);
    const unsigned missing = 5 - bits;
    return static_cast<std::uint8_t>(value << missing | value >> (bits - missing));
}

/// `half`: 16 bits whose lowest is no part of the colour if it is the low half, which has one bit of blue
/// less.
PvrtcColor unpackHalf(std::uint32_t half, bool isLow) {
    const unsigned lost = isLow ? 1 : 0;
    if ((half & opaqueBit) != 0)
        return {widened(half, 10, 5), widened(half, 5, 5), widened(half, lost, 5 - lost), fullAlpha};
    const auto alpha = static_cast<std::uint8_t>((half >> 12U & 7U) << 1U);
    return {widened(half, 8, 4), widened(half, 4, 4), widened(half, lost, 4 - lost), alpha};
}

std::uint32_t packHalf(const PvrtcColor& color, bool isLow) {
    const unsigned lost = isLow ? 1 : 0;
    const std::uint32_t red = color[0];
    const std::uint32_t green = color[1];
    const std::uint32_t blue = color[2];
    if (color[3] == fullAlpha)
        return opaqueBit | red << 10U | green << 5U | blue >> lost << lost;
    return std::uint32_t{color[3]} >> 1U << 12U | red >> 1U << 8U | green >> 1U << 4U |
           blue >> (1 + lost) << lost;
}

/// Every second bit of `value`, from bit 0 on, moved together.
std::uint32_t gathered(std::uint32_t value) {
    value &= 0x55555555U;
    value = (value | value >> 1U) & 0x33333333U;
    value = (value | value >> 2U) & 0x0F0F0F0FU;
    value = (value | value >> 4U) & 0x00FF00FFU;
    return (value | value >> 8U) & 0x0000FFFFU;
}

} // namespace

PvrtcColorPair pvrtcUnpackColors(std::uint32_t word) {
    return {unpackHalf(word & 0xFFFFU, true), unpackHalf(word >> 16U, false)};
}

std::uint32_t pvrtcPackColors(const PvrtcColorPair& colors) {
    return packHalf(colors[0], true) | packHalf(colors[1], false) << 16U;
}

std::vector<std::uint32_t> pvrtcBlockOrder(int columns, int rows) {
    const auto width = static_cast<std::uint32_t>(columns);
    const auto height = static_cast<std::uint32_t>(rows);
    std::vector<std::uint32_t> order(std::size_t{width} * height);
    std::uint32_t index = 0;
    for (std::uint32_t code = 0; index < order.size(); ++code) {
        const std::uint32_t x = gathered(code >> 1U);
        const std::uint32_t y = gathered(code);
        if (x < width && y < height)
            order[std::size_t{y} * width + x] = index++;
    }
    return order;
}
