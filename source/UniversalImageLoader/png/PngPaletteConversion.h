#pragma once

#include "PngPicture.h"

/// Makes a palette picture of one of 8 bits a sample without a palette, if it has no more than 256 colours
/// (with alpha, and with the background) and the palette takes less than the pixels save. The entries stand
/// in the order of alpha, red, green, blue, so that the alpha values that have to be stored come first.
/// `mask` of PngReduction. True if the picture was converted.
bool convertToPalette(PngPicture& picture, unsigned mask);
