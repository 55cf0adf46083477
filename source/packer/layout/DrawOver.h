#pragma once

#include <QImage>

/// Draws an ARGB32 image over another of the same size with the toolkit's source-over compositing. Throws
/// Error (OutOfMemory).
void drawOver(const QImage& image, QImage& target);
