#pragma once

// The colours of the straightforward encoder in PvrtcYardstick.cpp: rounding and least squares.

#include "PvrtcFormat.h"

#include <algorithm>

/// The nearest value that a field of so many bits widens to, given in units of five bits.
inline std::uint8_t nearestField(float value, unsigned bits) {
    const unsigned steps = (1U << bits) - 1;
    const auto field =
        static_cast<unsigned>(std::clamp(value / 31 * float(steps) + 0.5F, 0.0F, float(steps)));
    const unsigned missing = 5 - bits;
    return static_cast<std::uint8_t>(field << missing | field >> (bits - missing));
}

inline PvrtcColor nearestColor(const std::array<float, 4>& color, bool isLow) {
    const bool opaque = color[3] >= 14.5F;
    const unsigned bits = opaque ? 5 : 4;
    const auto alpha = static_cast<std::uint8_t>(std::clamp(color[3] / 2 + 0.5F, 0.0F, 7.0F));
    return {nearestField(color[0], bits), nearestField(color[1], bits),
            nearestField(color[2], isLow ? bits - 1 : bits),
            static_cast<std::uint8_t>(opaque ? 15 : alpha * 2)};
}

/// Sums of products of the weights that the two colours of a block have.
struct Normal {
    float lowLow = 0;
    float lowHigh = 0;
    float highHigh = 0;

    void add(float lowWeight, float highWeight) {
        lowLow += lowWeight * lowWeight;
        lowHigh += lowWeight * highWeight;
        highHigh += highWeight * highWeight;
    }
};

/// The normal equations for the two colours of a block.
struct Equations {
    Normal normal;      ///< of red, green and blue
    Normal alphaNormal; ///< without the pixels whose alpha isn't the colours'
    std::array<float, 4> low{};
    std::array<float, 4> high{};
};

/// With (nearly) one level alone the two colours can't be told apart: they are pulled a little to what they
/// were.
inline PvrtcColorPair solved(const Equations& equations, const PvrtcColorPair& before) {
    constexpr float pull = 1e-3F;
    std::array<float, 4> newLow{};
    std::array<float, 4> newHigh{};
    for (std::size_t channel = 0; channel < 4; ++channel) {
        const Normal& sums = channel == 3 ? equations.alphaNormal : equations.normal;
        const float lowLow = sums.lowLow + pull;
        const float highHigh = sums.highHigh + pull;
        const float lowSide = equations.low[channel] + pull * float(before[0][channel]);
        const float highSide = equations.high[channel] + pull * float(before[1][channel]);
        const float determinant = lowLow * highHigh - sums.lowHigh * sums.lowHigh;
        newLow[channel] = (highHigh * lowSide - sums.lowHigh * highSide) / determinant;
        newHigh[channel] = (lowLow * highSide - sums.lowHigh * lowSide) / determinant;
    }
    return {nearestColor(newLow, true), nearestColor(newHigh, false)};
}
