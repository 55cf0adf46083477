#pragma once

#include "PixelWindow.h"

namespace pvrtc {

/// The weightings of a footprint's pixels.
enum Weighting { FirstKernel, SecondKernel, OwnPixels, WeightingCount };

/// What the pixels of a footprint are like.
struct FootprintStatistics {
    bool flat;             ///< all pixels are equal: no bases then
    int transparentPixels; ///< with alpha 0
    Float4 lowest;         ///< of each channel
    Float4 highest;
    ColorBasis bases[WeightingCount]; ///< eigenvectors of the covariance, with the extents of all pixels or
                                      ///< of the block's own
    int mainAxis[WeightingCount];     ///< that of the largest eigenvalue
};

template <int Bits>
FootprintStatistics footprintStatistics(const PixelWindow<Bits>& window);

} // namespace pvrtc
