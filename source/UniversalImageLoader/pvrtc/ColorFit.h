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

/// How a colour in units of PvrtcColor is rounded. The largest alpha that isn't opaque is 14.
inline const ColorRounding& roundingOf(Float4 color, bool isLow) {
    return colorRoundings[color[3] >= 14.5F][isLow];
}

/// The colour that can be stored nearest to one in units of PvrtcColor, which it may exceed; `otherSide`: the
/// nearest one on the other side of each channel.
inline Int32x4 storedChannels(Float4 color, const ColorRounding& way, bool otherSide) {
    const Float4 field = color * way.toField;
    const Float4 bounded = field < 0 ? Float4{} : field > way.largest ? way.largest : field;
    const Float4 nearest = __builtin_convertvector(__builtin_convertvector(bounded + 0.5F, Int32x4), Float4);
    const Float4 other = bounded < nearest ? nearest - 1 : nearest + 1;
    const Float4 whole = !otherSide ? nearest : other > way.largest ? way.largest : other;
    return __builtin_convertvector(whole * way.fromField + way.offset, Int32x4);
}

inline Int32x4 nearestChannels(Float4 color, bool isLow) {
    return storedChannels(color, roundingOf(color, isLow), false);
}

inline PvrtcColorPair nearestPair(Float4 low, Float4 high) {
    PvrtcColorPair nearest;
    storeBytes(&nearest, nearestChannels(low, true), nearestChannels(high, false));
    return nearest;
}

/// The sum of squared errors as it goes with the two colours of a pair, less what they don't change: one of
/// them first, the one that counts more, then the other.
template <int Bits>
class PairEquations {
public:
    PairEquations(const PvrtcColorPair& scored, const Score& score)
        : m_firstIndex(score.squares[1] > score.squares[0] ? 1 : 0) {
        const int secondIndex = 1 - m_firstIndex;
        const ColorFloats before(scored);
        m_first = before.colors[m_firstIndex];
        m_second = before.colors[secondIndex];
        m_firstSide = __builtin_convertvector(score.sides[m_firstIndex], Float4) * units;
        m_secondSide = __builtin_convertvector(score.sides[secondIndex], Float4) * units;
        m_firstSquare = static_cast<float>(score.squares[m_firstIndex]) + ridge;
        m_secondSquare = static_cast<float>(score.squares[secondIndex]) + ridge;
        m_product = static_cast<float>(score.product);
    }

    bool firstIsLow() const { return m_firstIndex == 0; }
    /// The first colour of the pair that suits best.
    Float4 bestFirst() const {
        const float determinant = m_firstSquare * m_secondSquare - m_product * m_product;
        return m_first + (m_firstSide * m_secondSquare - m_secondSide * m_product) / determinant;
    }
    /// The second colour that suits a first one best.
    Float4 bestSecond(Int32x4 first) const {
        return m_second + (m_secondSide - moveOf(first, m_first) * m_product) / m_secondSquare;
    }
    /// By channel.
    Float4 error(Int32x4 first, Int32x4 second) const {
        const Float4 x = moveOf(first, m_first);
        const Float4 y = moveOf(second, m_second);
        return x * (x * m_firstSquare + y * (2 * m_product) - m_firstSide * 2) +
               y * (y * m_secondSquare - m_secondSide * 2);
    }

private:
    // What a unit of a colour under a weight of one eighth does to a channel from 0 to 255, the other way
    // around.
    static constexpr float colorUnits = 8 * (Bits == 2 ? 128 : 64) / 33.0F;
    static constexpr float alphaUnits = 8 * (Bits == 2 ? 32 : 16) / 17.0F;
    static constexpr Float4 units = {colorUnits, colorUnits, colorUnits, alphaUnits};
    /// Little beside squares of weights, but not beside none: with (nearly) one level alone the pair isn't
    /// determined, and what isn't stays.
    static constexpr float ridge = Bits == 2 ? 256 : 64;

    static Float4 moveOf(Int32x4 to, Float4 from) { return __builtin_convertvector(to, Float4) - from; }

    int m_firstIndex;
    Float4 m_first;
    Float4 m_second;
    Float4 m_firstSide;
    Float4 m_secondSide;
    float m_firstSquare;
    float m_secondSquare;
    float m_product;
};

/// The pair that can be stored that suits the modulation of a score best by least squares: each channel of
/// the first colour is rounded both ways, and the second one makes up for it.
template <int Bits>
PvrtcColorPair leastSquaresColors(const PvrtcColorPair& scored, const Score& score) {
    const PairEquations<Bits> equations(scored, score);
    const bool firstIsLow = equations.firstIsLow();
    const Float4 best = equations.bestFirst();
    const ColorRounding& way = roundingOf(best, firstIsLow);
    const Int32x4 first = storedChannels(best, way, false);
    const Int32x4 otherFirst = storedChannels(best, way, true);
    const Int32x4 second = nearestChannels(equations.bestSecond(first), !firstIsLow);
    Int32x4 otherSecond = nearestChannels(equations.bestSecond(otherFirst), !firstIsLow);
    // Opaque colours and others have different fields.
    constexpr int opaqueAlpha = 15;
    if ((second[3] == opaqueAlpha) != (otherSecond[3] == opaqueAlpha))
        otherSecond = second;
    const Int32x4 other = equations.error(otherFirst, otherSecond) < equations.error(first, second);
    const Int32x4 newFirst = chosen(other, otherFirst, first);
    const Int32x4 newSecond = chosen(other, otherSecond, second);
    const Int32x4 firstIsHigh = Int32x4{} - (firstIsLow ? 0 : 1); // a mask
    PvrtcColorPair pair;
    storeBytes(&pair, chosen(firstIsHigh, newSecond, newFirst), chosen(firstIsHigh, newFirst, newSecond));
    return pair;
}

} // namespace pvrtc
