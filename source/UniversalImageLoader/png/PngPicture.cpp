#include "PngPicture.h"

#include <png.h>

bool PngPicture::hasPalette() const { return colorType == PNG_COLOR_TYPE_PALETTE; }

bool PngPicture::hasColor() const { return (colorType & PNG_COLOR_MASK_COLOR) != 0; }

bool PngPicture::hasAlpha() const { return (colorType & PNG_COLOR_MASK_ALPHA) != 0; }

int PngPicture::channels() const {
    const int colors = hasColor() && !hasPalette() ? 3 : 1;
    return colors + (hasAlpha() ? 1 : 0);
}

std::size_t PngPicture::colorChunkBytes() const {
    std::size_t bytes = palette.empty() ? 0 : pngChunkFrame + 3 * palette.size();
    if (!alphas.empty())
        bytes += pngChunkFrame + alphas.size();
    if (transparent)
        bytes += pngChunkFrame + (hasColor() ? 6 : 2);
    return bytes;
}
