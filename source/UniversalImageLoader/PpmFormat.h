#pragma once

#include "PPM_Format.h"

#include <QIODevice>
#include <QImage>

/// Netpbm's portable pixmaps with samples of eight bits: P3 (decimal numbers) and P6 (bytes).

/// Null for another kind or maximum than 255, and for numbers that are none. What a short file leaves out is
/// black. `*flavour` receives the kind.
QImage readPpm(QIODevice& device, UniversalImageLoader::PPM_Format* flavour);

/// Writes the colours of all pixels, whatever their alpha. False if the device fails.
bool writePpm(QIODevice& device, const QImage& image, UniversalImageLoader::PPM_Format flavour);
