#pragma once

#include "ErrorDiffusion.h"
#include "PixelReduction.h"

#include <QColor>
#include <QImage>

/// Brings images to what a texture's pixel format can hold, expanded to 32 bits again. Images are ARGB32; a
/// null image gives a null image. Any thread. All throw Error (OutOfMemory) where a new image can't be made.

/// The whole step for one sprite: flattening on the background for the formats without alpha, reduction with
/// or without dithering, premultiplication of alpha. A dither type outside of the enum leaves the pixels as
/// they are.
QImage reduceColors(const QImage& image, SettingsBase::OutputFormat format, const QColor& background,
                    SettingsBase::DitherType ditherType, bool premultiply);

/// Reduces each pixel by itself, after multiplication of its colours with its alpha if asked. Throws Error
/// (PixelFormat) for a format that the rule doesn't know.
QImage quantizeImage(const QImage& image, PixelFormatCode code, bool premultiply, ReductionRule rule);

/// Colours multiplied with alpha / 255, rounded to nearest.
QImage premultiplyImage(const QImage& image);

/// Opaque greys, as light as the pixels were opaque.
QImage alphaToGrey(const QImage& image);

/// The mean of red, green and blue as grey, with the alpha of the pixel.
QImage rgbToIntensity(const QImage& image);
