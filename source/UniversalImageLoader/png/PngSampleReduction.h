#pragma once

#include "PngPicture.h"

/// Fewer bits a sample and fewer channels for a picture of 8 or 16 bits a sample without a palette: 16 to 8
/// bits, colour to grey, no alpha. `mask` of PngReduction. True if anything changed.
bool reduceSamples(PngPicture& picture, unsigned mask);
