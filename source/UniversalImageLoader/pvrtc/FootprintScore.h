#pragma once

#include "Footprint.h"

namespace pvrtc {

/// What one pair of colours makes of a footprint with the best modulation, and the sums of the normal
/// equations of the pair that would suit that modulation best. Weights are those of the footprint times the
/// eighths of the blending level.
struct Score {
    std::int32_t error;      ///< sum of squared differences of all channels
    std::int32_t product;    ///< sum of the products of the low and the high colour's weight
    std::int32_t squares[2]; ///< sums of their squares
    Int32x4 sides[2];        ///< sums of weight times what the picture is above the blend, by channel
};

/// The regions of a footprint that have more than one pixel, as masks by lane.
template <int Bits>
struct RegionMasks {
    static constexpr int most = PixelWindow<Bits>::count / 4;
    int count;
    alignas(32) std::int32_t masks[most][Footprint<Bits>::lanes];
};

/// What a call of FootprintScorer is to do.
template <int Bits>
struct ScoreRequest {
    std::int16_t colors[2][4];        ///< as PvrtcColorPair has them
    unsigned modes;                   ///< bit set of those to be scored
    const RegionMasks<Bits>* regions; ///< all pixels of one take one modulation; null for each pixel its own
    /// In interpolating 2-bit modes: where the error isn't above this, the stored pixels are chosen once
    /// more, then also by what they do to the interpolated ones.
    std::int64_t jointLimit;
};

/// Scores a footprint; results go to the places of their modes. The numbers are the same on every processor.
template <int Bits>
using FootprintScorer = void (*)(const Footprint<Bits>&, const ScoreRequest<Bits>&, Score*);

/// The fastest one for this processor.
template <int Bits>
FootprintScorer<Bits> footprintScorer();

/// Those for any processor.
void scoreFootprintPlain(const Footprint<2>& footprint, const ScoreRequest<2>& request, Score* scores);
void scoreFootprintPlain(const Footprint<4>& footprint, const ScoreRequest<4>& request, Score* scores);

/// Those for processors with AVX2, on which they take about half the time.
void scoreFootprintAvx2(const Footprint<2>& footprint, const ScoreRequest<2>& request, Score* scores);
void scoreFootprintAvx2(const Footprint<4>& footprint, const ScoreRequest<4>& request, Score* scores);

} // namespace pvrtc
