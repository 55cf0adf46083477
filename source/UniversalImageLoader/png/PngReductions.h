#pragma once

#include "PngLog.h"
#include "PngOptions.h"
#include "PngPicture.h"

#include <QString>

/// The lossless reductions of a picture's type, as bits of a mask.
enum PngReduction : unsigned {
    Reduce16To8 = 0x001,
    Reduce8To421 = 0x002, ///< fewer bits an index
    ReduceRgbToGray = 0x004,
    ReduceStripAlpha = 0x008,
    ReduceRgbToPalette = 0x010,
    ReduceGrayToPalette = 0x040,
    ReducePaletteToGray = 0x080,
    ReducePaletteEntries = 0x200,

    ReduceBitDepth = 0x003,
    ReduceColorType = 0x0FC,
    ReducePalette = 0x300,
    ReduceAll = 0x3FF,
};

/// Gives the picture the smallest type that the mask allows and that holds every pixel as it is. True if
/// anything changed. Throws Error for a palette that is too small if `options.fix` doesn't allow its repair.
bool reducePicture(PngPicture& picture, unsigned mask, const PngOptions& options, PngLog& log);

/// The picture's type in words, such as "2 bits/pixel, 3 colors (1 transparent) in palette".
QString pngTypeText(const PngPicture& picture);
