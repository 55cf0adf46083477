#pragma once

#include "FootprintScore.h"

namespace pvrtc {

/// A colour of four channels from 0 to 255 in units of PvrtcColor, and back.
inline Float4 toFormatUnits(Float4 color) {
    return color * Float4{31.0F / 255, 31.0F / 255, 31.0F / 255, 15.0F / 255};
}
inline Float4 fromFormatUnits(Float4 color) {
    return color * Float4{255.0F / 31, 255.0F / 31, 255.0F / 31, 255.0F / 15};
}

/// A pair in numbers to calculate with.
struct ColorFloats {
    explicit ColorFloats(const PvrtcColorPair& pair) {
        const Int16x8 channels = loadBytes(&pair);
        colors[0] = halfFloats<0>(channels);
        colors[1] = halfFloats<1>(channels);
    }
    Float4 colors[2];
};

/// How a colour is rounded to the fields of the word and widened again, by channel.
struct ColorRounding {
    Float4 toField;
    Float4 largest;
    Float4 fromField;
    Float4 offset;
};

/// By opaque or not, and high or low. Widened by repeating its bits, a field is its share of 31, rounded.
/// Opaque colours have five bits a channel, others four, and three of alpha, which a 0 bit follows; blue of
/// the low colour has one bit less.
inline constexpr ColorRounding colorRoundings[2][2] = {
    {{{15.0F / 31, 15.0F / 31, 15.0F / 31, 0.5F},
      {15, 15, 15, 7},
      {31.0F / 15, 31.0F / 15, 31.0F / 15, 2},
      {0.5F, 0.5F, 0.5F, 0}},
     {{15.0F / 31, 15.0F / 31, 7.0F / 31, 0.5F},
      {15, 15, 7, 7},
      {31.0F / 15, 31.0F / 15, 31.0F / 7, 2},
      {0.5F, 0.5F, 0.5F, 0}}},
    {{{1, 1, 1, 0}, {31, 31, 31, 0}, {1, 1, 1, 0}, {0.5F, 0.5F, 0.5F, 15}},
     {{1, 1, 15.0F / 31, 0}, {31, 31, 15, 0}, {1, 1, 31.0F / 15, 0}, {0.5F, 0.5F, 0.5F, 15}}}};

/// The colour that the format can store nearest to this one, given in units of PvrtcColor, which it may
/// exceed.
inline Int32x4 nearestChannels(Float4 color, bool isLow) {
    // The largest alpha that isn't opaque is 14.
    const ColorRounding& way = colorRoundings[color[3] >= 14.5F][isLow];
    const Float4 field = color * way.toField;
    const Float4 bounded = field < 0 ? Float4{} : field > way.largest ? way.largest : field;
    const Float4 whole = __builtin_convertvector(__builtin_convertvector(bounded + 0.5F, Int32x4), Float4);
    return __builtin_convertvector(whole * way.fromField + way.offset, Int32x4);
}

inline PvrtcColorPair nearestPair(Float4 low, Float4 high) {
    PvrtcColorPair nearest;
    storeBytes(&nearest, nearestChannels(low, true), nearestChannels(high, false));
    return nearest;
}

/// The pair that suits the modulation of a score best by least squares: the scored pair, moved by what the
/// picture differs from it, and rounded to what the format can store. With (nearly) one level alone the pair
/// isn't determined; what isn't stays.
template <int Bits>
PvrtcColorPair leastSquaresColors(const PvrtcColorPair& scored, const Score& score) {
    // What a unit of a colour under a weight of one eighth does to a channel from 0 to 255, the other way
    // around.
    constexpr float colorUnits = 8 * (Bits == 2 ? 128 : 64) / 33.0F;
    constexpr float alphaUnits = 8 * (Bits == 2 ? 32 : 16) / 17.0F;
    constexpr Float4 units = {colorUnits, colorUnits, colorUnits, alphaUnits};
    constexpr float ridge = Bits == 2 ? 256 : 64; // little beside squares of weights, but not beside none

    // The colour that counts more is rounded first; the other one makes up for its rounding.
    const int firstIndex = score.squares[1] > score.squares[0] ? 1 : 0;
    const int secondIndex = 1 - firstIndex;
    const ColorFloats before(scored);
    const Float4 first = before.colors[firstIndex];
    const Float4 second = before.colors[secondIndex];
    const Float4 firstSide = __builtin_convertvector(score.sides[firstIndex], Float4) * units;
    const Float4 secondSide = __builtin_convertvector(score.sides[secondIndex], Float4) * units;
    const float firstSquare = static_cast<float>(score.squares[firstIndex]) + ridge;
    const float secondSquare = static_cast<float>(score.squares[secondIndex]) + ridge;
    const auto product = static_cast<float>(score.product);

    const float determinant = firstSquare * secondSquare - product * product;
    const Float4 firstMove = (firstSide * secondSquare - secondSide * product) / determinant;
    const Int32x4 newFirst = nearestChannels(first + firstMove, firstIndex == 0);
    const Float4 secondMove =
        (secondSide - (__builtin_convertvector(newFirst, Float4) - first) * product) / secondSquare;
    const Int32x4 newSecond = nearestChannels(second + secondMove, secondIndex == 0);
    const Int32x4 turned = Int32x4{} - firstIndex; // a mask
    PvrtcColorPair pair;
    storeBytes(&pair, chosen(turned, newSecond, newFirst), chosen(turned, newFirst, newSecond));
    return pair;
}

} // namespace pvrtc
