#pragma once

#include <QIODevice>
#include <QImage>

/// Writes a TIFF file of IEEE floats of 32 bits from 0 to 1, uncompressed: red, green, blue, and alpha if the
/// picture has it. False on failure; what failed is told on the debug channel, with the file's `name`.
bool writeTiff(QIODevice& device, const QImage& image, const QString& name);
