#pragma once

#include "PixelReduction.h"

#include <QImage>

/// The published methods of spreading an error, each with and without alpha.
enum class DiffusionMethod : int {
    FloydSteinberg = 0,
    FloydSteinbergAlpha = 1,
    Atkinson = 2,
    AtkinsonAlpha = 3,
};

/// Reduces an ARGB32 image and spreads the error of each pixel to pixels that come later, rows from top to
/// bottom, each from left to right. `diffuseAlpha` spreads the error of alpha too. `premultiply` multiplies
/// the colours with the reduced alpha on the way. The result is ARGB32. Any thread. Throws Error: PixelFormat
/// for a format without reduction by nearest level, OutOfMemory.
QImage diffuseErrors(DiffusionMethod method, const QImage& image, PixelFormatCode code, bool diffuseAlpha,
                     bool premultiply);
