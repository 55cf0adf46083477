#pragma once

#include "BlockGrid.h"
#include "WorkingImage.h"

#include <algorithm>

namespace pvrtc {

/// The footprint of a block: the pixels around its centre that its colours reach, and those next to them,
/// wrapping around at the edges of the picture.
template <int Bits>
struct PixelWindow {
    static constexpr int blockWidth = pvrtcBlockWidth(Bits);
    static constexpr int width = 2 * blockWidth + 1;
    static constexpr int height = 2 * pvrtcBlockHeight + 1;
    static constexpr int count = width * height;
    /// Place of the block's own first pixel.
    static constexpr int ownX = blockWidth / 2;
    static constexpr int ownY = pvrtcBlockHeight / 2;

    PixelWindow(const WorkingImage& image, int column, int row);

    std::uint32_t pixels[height][width]; ///< red, green, blue, alpha from the lowest byte on
};

template <int Bits>
PixelWindow<Bits>::PixelWindow(const WorkingImage& image, int column, int row) {
    const auto wrapped = [](int place, int size) { return (place % size + size) % size; };
    const int left = column * blockWidth - ownX;
    const int top = row * pvrtcBlockHeight - ownY;
    for (int y = 0; y < height; ++y) {
        const std::uint32_t* line = image.row(wrapped(top + y, image.height()));
        if (left >= 0 && left + width <= image.width())
            std::copy_n(line + left, width, pixels[y]);
        else
            for (int x = 0; x < width; ++x)
                pixels[y][x] = line[wrapped(left + x, image.width())];
    }
}

} // namespace pvrtc
