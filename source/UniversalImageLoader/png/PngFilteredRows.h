#pragma once

#include "PngOptions.h"
#include "PngPicture.h"

/// What is deflated: the picture's rows, of every Adam7 pass if it is interlaced, each with its filter's
/// number before it.
struct PngFilteredRows {
    struct Pass {
        std::size_t rowBytes; ///< with the filter's byte
        std::size_t rows;
    };

    std::vector<std::uint8_t> bytes;
    std::vector<Pass> passes;
};

/// The picture's rows filtered by libpng, which also makes the choices of FilterAdaptive. Throws Error.
PngFilteredRows filterRows(const PngPicture& picture, DeltaFilter filter);
