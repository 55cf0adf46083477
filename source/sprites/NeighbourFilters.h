#pragma once

#include <QImage>

/// Enlarging filters for pixel art that copy pixels and blend none. Pixels are equal if all of their 32 bits
/// are, so a difference in alpha makes two pixels differ. Beyond the image's edge its outermost pixels go on.
/// They take and give 32 bits a pixel, of the same format; a null image gives a null image. Throw Error
/// (OutOfMemory).

/// AdvanceMAME Scale2x: twice the size.
QImage scale2x(const QImage& image);

/// AdvanceMAME Scale3x: three times the size.
QImage scale3x(const QImage& image);

/// Eagle: twice the size.
QImage eagle(const QImage& image);
