#pragma once

#include "ScaleMode.h"

#include <QImage>

/// The most pixels that a scaled image may have: 8192 x 8192.
inline constexpr qint64 maxScaledPixels = 0x4000000;

/// A sprite at another size. Takes and gives QImage::Format_ARGB32; any thread.
///
/// Smooth and Fast resize to the image's size times `scale`, each side rounded, halves away from zero. A side
/// that rounds to 0 gives a null image. The pixel art filters have a fixed factor and don't look at `scale`
/// (Scale2x, Eagle and Hq2x 2, Scale3x 3, Scale4x 4); the limit still counts the size that `scale` asks for,
/// whatever the mode. A mode outside of the enum gives a null image.
///
/// Throws Error: ScaledSprite above maxScaledPixels, OutOfMemory.
QImage scaleImage(const QImage& image, double scale, ScaleMode mode);
