#pragma once

// What FootprintScore.h declares, for vectors of one length. The files that include this are compiled for
// different processors, so each has its own copy of everything: what the linker would merge might not run
// everywhere.

#include "FootprintScore.h"
#include "ScoreVectors.h"

namespace pvrtc {
namespace {

/// What is worked out on the way to a score, by lane.
template <int Bits>
struct Modulation {
    using Lanes = Footprint<Bits>;
    alignas(32) std::int16_t difference[4][Lanes::lanes]; ///< of the picture from the blended low colour
    alignas(32) std::int16_t span[4][Lanes::lanes];       ///< of the blended high colour from the low one
    alignas(32) std::int32_t dots[Lanes::lanes];          ///< difference times span
    alignas(32) std::int32_t squares[Lanes::lanes];       ///< span times span
    alignas(32) std::int16_t levels[Lanes::lanes];        ///< eighths
    /// With 4 bits: masks of the pixels with alpha 0 by punch-through.
    alignas(32) std::int16_t transparent[Bits == 4 ? Lanes::lanes : 8];
    /// With 2 bits: levels of stored pixels, a row above the footprint and one below it included. Even rows
    /// have the even columns from 4 left of the block on, odd rows the odd ones from 5 left of it on.
    std::int16_t stored[Lanes::outsideRows][Lanes::outsideColumns];
};

template <int Bits>
void blendColors(const Footprint<Bits>& footprint, const ScoreRequest<Bits>& request,
                 Modulation<Bits>& modulation) {
    constexpr int step = sizeof(Int16s) / sizeof(std::int16_t);
    for (int at = 0; at < Footprint<Bits>::lanes; at += step) {
        const auto weight = load<Int16s>(footprint.weight + at);
        Int16s difference[4];
        Int16s span[4];
        for (int channel = 0; channel < 4; ++channel) {
            const auto end = [&](int which) {
                const Int16s own = weight * request.colors[which][channel];
                return pvrtcBlend(load<Int16s>(footprint.base[which][channel] + at) + own, channel == 3,
                                  Bits);
            };
            const Int16s low = end(0);
            const Int16s high = end(1);
            difference[channel] = load<Int16s>(footprint.target[channel] + at) - low;
            span[channel] = high - low;
            store(modulation.difference[channel] + at, difference[channel]);
            store(modulation.span[channel] + at, span[channel]);
        }
        storeDotProducts(modulation.dots + at, difference, span);
        storeDotProducts(modulation.squares + at, span, span);
    }
}

/// Gives all pixels of a region the sums over it.
template <int Bits>
void poolRegions(const RegionMasks<Bits>& regions, Modulation<Bits>& modulation) {
    for (int region = 0; region < regions.count; ++region) {
        const std::int32_t* mask = regions.masks[region];
        for (std::int32_t* values : {modulation.dots, modulation.squares}) {
            Int32x8 partial{};
            for (int at = 0; at < Footprint<Bits>::lanes; at += 8)
                partial = partial + (load<Int32x8>(values + at) & load<Int32x8>(mask + at));
            const Int32x4 four = firstHalf(partial) + secondHalf(partial);
            const Int32x4 sum = Int32x4{} + ((four[0] + four[1]) + (four[2] + four[3]));
            for (int at = 0; at < Footprint<Bits>::lanes; at += 8)
                store(values + at,
                      chosen(load<Int32x8>(mask + at), joined(sum, sum), load<Int32x8>(values + at)));
        }
    }
}

/// The best of the levels 0, 3, 5, 8, or where `threeLevels` of 0, 4, 8: where the picture's place between
/// the two colours, dot / square, passes the middle of two levels. Ties go to the third, the second, the
/// first, the last one.
[[gnu::always_inline]] inline Int16x8 bestLevels(const std::int32_t* dots, const std::int32_t* squares,
                                                 Int16x8 threeLevels) {
    const Int32x8 place = load<Int32x8>(dots) << 4;
    const Int32x8 square = load<Int32x8>(squares);
    const Int32x8 inward = square & widened(threeLevels);
    const Int32x8 triple = (square << 1) + square;
    const Int16x8 belowSecond = narrowed(triple + inward > place);
    const Int16x8 belowThird = narrowed((square << 3) > place);
    const Int16x8 aboveThird = narrowed(place > (square << 4) - triple - inward);
    const Int16x8 outerStep = 3 - threeLevels;
    return 5 + threeLevels - (belowThird & (2 + threeLevels + threeLevels)) - (belowSecond & outerStep) +
           (aboveThird & outerStep);
}

/// The better of the levels 0 and 8; a tie goes to 8.
[[gnu::always_inline]] inline Int16x8 betterEnds(const std::int32_t* dots, const std::int32_t* squares) {
    return narrowed((load<Int32x8>(dots) << 1) >= load<Int32x8>(squares)) & 8;
}

/// Adds up the score of the chosen levels.
template <int Bits, bool Punches>
Score scoreLevels(const Footprint<Bits>& footprint, const Modulation<Bits>& modulation) {
    constexpr int step = sizeof(Int16s) / sizeof(std::int16_t);
    Int32s error{};
    Int32s low[4] = {};
    Int32s high[4] = {};
    Int32s lowLow{};
    Int32s lowHigh{};
    Int32s highHigh{};
    for (int at = 0; at < Footprint<Bits>::lanes; at += step) {
        const auto level = load<Int16s>(modulation.levels + at);
        const auto weight = load<Int16s>(footprint.weight + at);
        const Int16s highWeight = weight * level;
        const Int16s lowWeight = (weight << 3) - highWeight;
        lowLow += multiplyAddPairs(lowWeight, lowWeight);
        lowHigh += multiplyAddPairs(lowWeight, highWeight);
        highHigh += multiplyAddPairs(highWeight, highWeight);
        for (int channel = 0; channel < 4; ++channel) {
            const auto span = load<Int16s>(modulation.span[channel] + at);
            Int16s rest = load<Int16s>(modulation.difference[channel] + at) - ((level * span) >> 3);
            if (Punches && channel == 3) {
                // Alpha is 0 there whatever the colours are: it costs, but pulls at neither.
                const auto transparent = load<Int16s>(modulation.transparent + at);
                const Int16s lost = load<Int16s>(footprint.target[3] + at) & transparent;
                error += multiplyAddPairs(lost, lost);
                rest &= ~transparent;
            }
            error += multiplyAddPairs(rest, rest);
            low[channel] += multiplyAddPairs(lowWeight, rest);
            high[channel] += multiplyAddPairs(highWeight, rest);
        }
    }
    const Int32x4 common = sums(folded(error), folded(lowHigh), folded(lowLow), folded(highHigh));
    return {common[0],
            common[1],
            {common[2], common[3]},
            {sums(folded(low[0]), folded(low[1]), folded(low[2]), folded(low[3])),
             sums(folded(high[0]), folded(high[1]), folded(high[2]), folded(high[3]))}};
}

/// The masks of eight lanes of a 4-bit footprint; those of the empty row are none.
[[gnu::always_inline]] inline Int16x8 punchThroughMask(const LaneModes<4>& modes, int at) {
    const int row = at / 8;
    return row < Footprint<4>::rows ? load<Int16x8>(modes.punchThrough[Footprint<4>::blockRow(row)])
                                    : Int16x8{};
}

/// Takes alpha 0 with the middle colour where that is better than, or as good as, the chosen level.
void punchThrough(const Footprint<4>& footprint, const LaneModes<4>& modes, Modulation<4>& modulation) {
    for (int at = 0; at < Footprint<4>::lanes; at += 8) {
        const auto level = load<Int16x8>(modulation.levels + at);
        Int16x8 rest[4];
        Int16x8 middleRest[4];
        for (int channel = 0; channel < 4; ++channel) {
            const auto difference = load<Int16x8>(modulation.difference[channel] + at);
            const auto span = load<Int16x8>(modulation.span[channel] + at);
            rest[channel] = difference - ((level * span) >> 3);
            middleRest[channel] =
                channel == 3 ? load<Int16x8>(footprint.target[3] + at) : difference - ((span << 2) >> 3);
        }
        const Int16x8 better = narrowed(dotProducts(middleRest, middleRest) <= dotProducts(rest, rest));
        const Int16x8 transparent = better & punchThroughMask(modes, at);
        store(modulation.transparent + at, transparent);
        store(modulation.levels + at, chosen(transparent, Int16x8{} + 4, level));
    }
}

Score scoreMode(const Footprint<4>& footprint, const ScoreRequest<4>&, int mode, Modulation<4>& modulation) {
    const LaneModes<4>& modes = footprint.modes[mode];
    for (int at = 0; at < Footprint<4>::lanes; at += 8)
        store(modulation.levels + at,
              bestLevels(modulation.dots + at, modulation.squares + at, punchThroughMask(modes, at)));
    if (!modes.punches)
        return scoreLevels<4, false>(footprint, modulation);
    punchThrough(footprint, modes, modulation);
    return scoreLevels<4, true>(footprint, modulation);
}

/// Where a 2-bit footprint has the stored (`half` 0) or the interpolated pixels (1) of a row.
struct HalfRow {
    [[gnu::always_inline]] HalfRow(int row, int half)
        : shift((row + 1 + half) % 2), lane(row * 16 + shift * 8), blockRow(Footprint<2>::blockRow(row)) {}

    [[gnu::always_inline]] Int16x8 of(const std::int16_t (&lanes)[3][16]) const {
        return load<Int16x8>(lanes[blockRow] + shift * 8);
    }

    int shift;    ///< column in the arrays that have a row above and one below
    int lane;     ///< the first one
    int blockRow; ///< kind of the row
};

/// Stored pixels that have the end values alone although their blocks interpolate: their low bits choose the
/// interpolation.
[[gnu::always_inline]] inline Int16x8 choosingPixels(int row, bool oneDirection) {
    // The first pixels of the own block and of the ones to the right and below; the centre of the own one.
    if (row == 1 || row == 5)
        return Int16x8{0, 0, -1, 0, 0, 0, -1, 0};
    return row == 3 && oneDirection ? Int16x8{0, 0, 0, 0, -1, 0, 0, 0} : Int16x8{};
}

/// The levels of the interpolated pixels, from those of the stored ones.
void interpolateLevels(const LaneModes<2>& modes, Modulation<2>& modulation) {
    for (int row = 0; row < Footprint<2>::rows; ++row) {
        const HalfRow between(row, 1);
        const std::int16_t* line = modulation.stored[row + 1];
        const Int16x8 beside = load<Int16x8>(line) + load<Int16x8>(line + 1);
        const Int16x8 stacked = load<Int16x8>(modulation.stored[row] + between.shift) +
                                load<Int16x8>(modulation.stored[row + 2] + between.shift);
        const Int16x8 level = (beside * between.of(modes.across) + stacked * between.of(modes.down) + 2) >> 2;
        const Int16x8 own = betterEnds(modulation.dots + between.lane, modulation.squares + between.lane);
        store(modulation.levels + between.lane, chosen(between.of(modes.oneBit), own, level));
    }
}

/// Levels of a row's stored pixels; the one left of the row stays.
[[gnu::always_inline]] inline void setStored(int row, Int16x8 levels, const Footprint<2>& footprint,
                                             Modulation<2>& modulation) {
    const HalfRow half(row, 0);
    std::int16_t* line = modulation.stored[row + 1];
    store(line + half.shift, levels);
    line[0] = footprint.outside[row + 1][0];
    store(modulation.levels + half.lane, levels);
}

/// The best level of each stored pixel for itself.
void chooseStored(const Footprint<2>& footprint, const LaneModes<2>& modes, Modulation<2>& modulation) {
    for (int row = 0; row < Footprint<2>::rows; ++row) {
        const HalfRow half(row, 0);
        const std::int32_t* dots = modulation.dots + half.lane;
        const std::int32_t* squares = modulation.squares + half.lane;
        const Int16x8 twoLevels = half.of(modes.oneBit) | choosingPixels(row, modes.oneDirection);
        setStored(row, chosen(twoLevels, betterEnds(dots, squares), bestLevels(dots, squares, Int16x8{})),
                  footprint, modulation);
    }
}

/// How the error of interpolated pixels goes with the level of a stored one beside it, above or below: linear
/// and quadratic part, in the arrangement of Modulation::stored with what is interpolated in its place.
struct Influence {
    float acrossSlope[Footprint<2>::outsideRows][Footprint<2>::outsideColumns] = {};
    float acrossCurve[Footprint<2>::outsideRows][Footprint<2>::outsideColumns] = {};
    float downSlope[Footprint<2>::outsideRows][Footprint<2>::outsideColumns] = {};
    float downCurve[Footprint<2>::outsideRows][Footprint<2>::outsideColumns] = {};
};

[[gnu::always_inline]] inline Float8 floats(const std::int32_t* from) {
    return toFloats(load<Int32x8>(from));
}
[[gnu::always_inline]] inline Float8 floats(const std::int16_t* from) {
    return toFloats(widened(load<Int16x8>(from)));
}

void measureInfluence(const LaneModes<2>& modes, const Modulation<2>& modulation, Influence& influence) {
    for (int row = 0; row < Footprint<2>::rows; ++row) {
        const HalfRow between(row, 1);
        const Float8 square = floats(modulation.squares + between.lane);
        const Float8 slope = floats(modulation.dots + between.lane) * 4.0F -
                             square * floats(modulation.levels + between.lane) * 0.5F;
        const Float8 across = floats(modes.across[between.blockRow] + between.shift * 8);
        const Float8 down = floats(modes.down[between.blockRow] + between.shift * 8);
        store(influence.acrossSlope[row + 1] + between.shift, across * slope);
        store(influence.acrossCurve[row + 1] + between.shift, across * across * square);
        store(influence.downSlope[row + 1] + between.shift, down * slope);
        store(influence.downCurve[row + 1] + between.shift, down * down * square);
    }
}

/// The best level of each stored pixel for itself and for the pixels interpolated from it, with all other
/// stored pixels as they were.
void chooseJointly(const Footprint<2>& footprint, const LaneModes<2>& modes, Modulation<2>& modulation) {
    Influence influence;
    measureInfluence(modes, modulation, influence);
    for (int row = 0; row < Footprint<2>::rows; ++row) {
        const HalfRow half(row, 0);
        const auto around = [&](const auto& across, const auto& down) {
            return load<Float8>(across[row + 1]) + load<Float8>(across[row + 1] + 1) +
                   load<Float8>(down[row] + half.shift) + load<Float8>(down[row + 2] + half.shift);
        };
        const Float8 ownCurve = floats(modulation.squares + half.lane);
        const Float8 curve = ownCurve + around(influence.acrossCurve, influence.downCurve) * 0.0625F;
        const Float8 place = floats(modulation.dots + half.lane) * 16.0F +
                             around(influence.acrossSlope, influence.downSlope) +
                             floats(modulation.levels + half.lane) * 2.0F * (curve - ownCurve);
        const Int16x8 belowSecond = narrowed(place < curve * 3.0F);
        const Int16x8 belowThird = narrowed(place < curve * 8.0F);
        const Int16x8 aboveThird = narrowed(place > curve * 13.0F);
        const Int16x8 best = 5 - (belowThird & 2) - (belowSecond & 3) + (aboveThird & 3);
        const Int16x8 twoLevels = half.of(modes.oneBit) | choosingPixels(row, modes.oneDirection);
        setStored(row, chosen(twoLevels, ~belowThird & 8, best), footprint, modulation);
    }
}

Score scoreMode(const Footprint<2>& footprint, const ScoreRequest<2>& request, int mode,
                Modulation<2>& modulation) {
    const LaneModes<2>& modes = footprint.modes[mode];
    __builtin_memcpy(modulation.stored, footprint.outside, sizeof modulation.stored);
    chooseStored(footprint, modes, modulation);
    interpolateLevels(modes, modulation);
    const Score score = scoreLevels<2, false>(footprint, modulation);
    if (score.error > request.jointLimit)
        return score;
    chooseJointly(footprint, modes, modulation);
    interpolateLevels(modes, modulation);
    const Score joint = scoreLevels<2, false>(footprint, modulation);
    return joint.error < score.error ? joint : score;
}

template <int Bits>
void scoreFootprint(const Footprint<Bits>& footprint, const ScoreRequest<Bits>& request, Score* scores) {
    Modulation<Bits> modulation;
    blendColors(footprint, request, modulation);
    if (request.regions != nullptr)
        poolRegions(*request.regions, modulation);
    for (int mode = 0; mode < modeCount(Bits); ++mode)
        if ((request.modes >> mode & 1U) != 0)
            scores[mode] = scoreMode(footprint, request, mode, modulation);
}

} // namespace
} // namespace pvrtc
