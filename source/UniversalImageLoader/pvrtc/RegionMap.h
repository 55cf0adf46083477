#pragma once

#include "PixelWindow.h"

namespace pvrtc {

/// A footprint split into connected regions of like colour.
template <int Bits>
struct RegionMap {
    explicit RegionMap(const PixelWindow<Bits>& window);

    /// Whether they number fewer than a quarter of the pixels.
    bool isCoarse() const { return count * 4 < PixelWindow<Bits>::count; }

    int count; ///< one per pixel if it was clear from the start that they are many
    /// Numbers from 0 on, if the map is coarse.
    std::uint8_t regions[PixelWindow<Bits>::height][PixelWindow<Bits>::width];
};

} // namespace pvrtc
