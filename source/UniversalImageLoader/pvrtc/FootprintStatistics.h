#pragma once

#include "PixelWindow.h"

namespace pvrtc {

/// The weightings of a footprint's pixels.
enum Weighting { FirstKernel, SecondKernel, OwnPixels, WeightingCount };

/// The channels of a pixel, from the lowest byte on.
inline Float4 pixelFloats(std::uint32_t pixel) {
    return Float4{float(pixel & 0xFFU), float(pixel >> 8U & 0xFFU), float(pixel >> 16U & 0xFFU),
                  float(pixel >> 24U)};
}

/// What the pixels of a footprint are like.
struct FootprintStatistics {
    bool flat;             ///< all pixels are equal: no bases then
    int transparentPixels; ///< with alpha 0
    Float4 lowest;         ///< of each channel
    Float4 highest;
    /// Eigenvectors of the covariance, with the extents of all pixels or of the block's own.
    ColorBasis bases[WeightingCount];
    int mainAxis[WeightingCount]; ///< that of the largest eigenvalue
};

template <int Bits>
FootprintStatistics footprintStatistics(const PixelWindow<Bits>& window);

} // namespace pvrtc
