#pragma once

#include "PngChunks.h"

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

/// A decoded PNG picture: the pixels as a PNG file lays them out, and all that goes into the file with them.
struct PngPicture {
    using Color = std::array<std::uint16_t, 3>; ///< red, green, blue; of a grey picture three times the grey

    std::uint32_t width = 0;  ///< pixels
    std::uint32_t height = 0; ///< pixels
    int bitDepth = 8;         ///< bits a sample: 1, 2, 4, 8 or 16
    int colorType = 0;        ///< PNG_COLOR_TYPE_...
    int interlace = 0;        ///< 0 none, 1 Adam7

    /// Rows from the top, each of rowBytes() bytes; samples of 16 bits are big-endian, smaller ones than 8
    /// bits are packed from the high bits on.
    std::vector<std::uint8_t> pixels;

    std::vector<std::array<std::uint8_t, 3>> palette; ///< of a palette picture; at most 256
    std::vector<std::uint8_t> alphas;                 ///< of the first palette entries; the others are opaque
    std::vector<std::uint16_t> histogram;             ///< of the palette, empty or of its size
    std::optional<Color> transparent;                 ///< without palette and alpha: pixels that don't show
    std::optional<Color> background;                  ///< of a palette picture three times the index
    std::vector<std::uint8_t> significantBits; ///< one a channel, three for a palette; empty if unknown

    // Other ancillary chunks, kept as they are in the file that they point into.
    std::vector<PngChunk> beforePalette;
    std::vector<PngChunk> beforeData;
    std::vector<PngChunk> afterData;

    bool hasPalette() const;
    bool hasColor() const; ///< red, green and blue, or a palette
    bool hasAlpha() const; ///< as a channel
    int channels() const;
    int bitsPerPixel() const { return channels() * bitDepth; }
    std::size_t rowBytes() const { return (std::size_t{width} * bitsPerPixel() + 7) / 8; }

    /// What PLTE and tRNS take in the file, with their frames.
    std::size_t colorChunkBytes() const;
};
