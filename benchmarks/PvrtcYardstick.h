#pragma once

#include <cstdint>
#include <vector>

/// What the encoder is measured by: a straightforward PVRTC encoder on one thread. Start colours are the
/// extremes of each block; then six rounds of the best modulation for all pixels and the least squares
/// colours for all blocks in turn. Sides are powers of two, `bits` is 2 or 4; the bytes are those of
/// pvrtcEncode's format.
std::vector<std::uint8_t> yardstickEncode(const std::uint8_t* rgba, int width, int height, int bits);
