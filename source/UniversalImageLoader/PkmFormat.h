#pragma once

#include <QIODevice>
#include <QImage>

/// PKM, version 1.0: a picture of ETC1 blocks behind a header of 16 bytes.

/// Null for any other header. What a short file leaves out counts as zero bytes.
QImage readPkm(QIODevice& device);

/// Encodes the colours of all pixels, whatever their alpha. False if a side is above 65532 or the device
/// fails.
bool writePkm(QIODevice& device, const QImage& image);
