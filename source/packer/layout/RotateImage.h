#pragma once

#include <QImage>

/// Quarter turns. The result has swapped sides and the format of the image; a null image gives a null image.
/// Throw Error (OutOfMemory).

/// Pixel (x, y) goes to (height - 1 - y, x).
QImage rotateClockwise(const QImage& image);

/// Pixel (x, y) goes to (y, width - 1 - x).
QImage rotateCounterClockwise(const QImage& image);
