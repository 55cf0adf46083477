#pragma once

#include <QIODevice>
#include <QImage>

/// Reads the first picture of a TIFF file, in strips or tiles, with one to four samples a pixel of 8, 16 or
/// 32 bits (unsigned, or IEEE floats of 32 bits). Null on failure; some are told on the debug channel, with
/// the file's `name`. The orientation that the file names isn't looked at.
QImage readTiff(QIODevice& device, const QString& name);
