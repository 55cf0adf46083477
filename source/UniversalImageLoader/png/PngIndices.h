#pragma once

#include "PngPicture.h"

/// The palette indices of a picture, one byte a pixel, row after row.
std::vector<std::uint8_t> unpackIndices(const PngPicture& picture);

/// Stores indices (one byte a pixel, row after row) as the picture's pixels, with so many bits each.
void packIndices(PngPicture& picture, std::vector<std::uint8_t> indices, int bitDepth);

/// The smallest bit depth that so many colours have room in.
int indexBits(std::size_t colors);
