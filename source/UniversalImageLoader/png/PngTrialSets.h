#pragma once

#include "PngOptions.h"

#include <vector>

/// One way to deflate the picture.
struct PngTrial {
    int filter;   ///< of DeltaFilter
    int strategy; ///< of zlib, 0 to 3
    int level;    ///< of zlib, 1 to 9
    int memory;   ///< of zlib, 1 to 9

    bool operator==(const PngTrial&) const = default;
};

/// The trials that the options and their preset ask for, in the order that decides among equal results:
/// filters and strategies from the lowest on, then levels and memory levels from the highest. `isIndexed`: a
/// picture with a palette or less than 8 bits a sample, for which the choice of the presets 0 and 1 differs.
/// Throws Error if an option holds no legal value.
std::vector<PngTrial> pngTrials(const PngOptions& options, bool isIndexed);
