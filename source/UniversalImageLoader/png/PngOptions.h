#pragma once

#include <cstdint>

/// How the bytes of a row are predicted before they are deflated. Adaptive: libpng chooses for each row.
enum DeltaFilter : int {
    FilterNone = 0,
    FilterLeft = 1,
    FilterUp = 2,
    FilterAverage = 3,
    FilterPaeth = 4,
    FilterAdaptive = 5,
};

/// What a run of the PNG optimiser is asked for. In a set bit n stands for the value n; an empty set leaves
/// the choice to the preset.
struct PngOptions {
    int interlace = 0; ///< interlace type of the output: 0 none, 1 Adam7, below 0 that of the input
    bool noBitDepthReduction = false;
    bool noColorTypeReduction = false;
    bool noPaletteReduction = false;
    bool noIdatRecoding = false;
    bool fix = true;   ///< small faults of the input are repaired, not refused
    bool force = true; ///< a signed file is optimised too, and loses its signature
    bool verbose = false;
    std::int16_t optimLevel = -1;          ///< preset; below 0 counts as 2, above 7 as 7
    std::uint32_t compressionLevelSet = 0; ///< of zlib, 1 to 9
    std::uint32_t memoryLevelSet = 0;      ///< of zlib, 1 to 9
    std::uint32_t strategySet = 0;         ///< of zlib, 0 to 3
    std::uint32_t filterSet = 0;           ///< of DeltaFilter
    std::int16_t windowBits = 0;           ///< of zlib, 8 to 15; 0 is libpng's own choice
};
