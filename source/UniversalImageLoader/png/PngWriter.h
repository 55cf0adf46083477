#pragma once

#include "PngPicture.h"

#include <QIODevice>

/// Writes the picture as a PNG file with all its data in one IDAT chunk: `idat` is its content. Throws Error
/// when the device doesn't take everything.
void writePng(QIODevice& device, const PngPicture& picture, const std::vector<std::uint8_t>& idat);

/// Copies a PNG file chunk by chunk. Throws Error when the device doesn't take everything, or for a damaged
/// chunk.
void copyPng(QIODevice& device, const QByteArray& file);
