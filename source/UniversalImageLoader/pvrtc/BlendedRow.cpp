#include "BlendedRow.h"

namespace pvrtc {

template <int Bits>
void blendRow(std::span<const PvrtcColorPair> above, std::span<const PvrtcColorPair> below, int place,
              PixelEnds* ends) {
    constexpr int blockWidth = pvrtcBlockWidth(Bits);
    const std::size_t columns = above.size();
    const std::size_t width = columns * blockWidth;
    const auto column = [&](std::size_t index) {
        return weighted(above[index], pvrtcBlockHeight - place) + weighted(below[index], place);
    };
    Int16x8 left = column(0);
    for (std::size_t index = 0; index < columns; ++index) {
        const Int16x8 right = column(index + 1 < columns ? index + 1 : 0);
        const Int16x8 step = right - left;
        Int16x8 sum = left * static_cast<std::int16_t>(blockWidth);
        // From the centre of this block to that of the next one.
        std::size_t x = index * blockWidth + blockWidth / 2;
        for (int across = 0; across < blockWidth; ++across, ++x, sum += step)
            ends[x < width ? x : x - width] = blendedEnds<Bits>(sum);
        left = right;
    }
}

template void blendRow<2>(std::span<const PvrtcColorPair>, std::span<const PvrtcColorPair>, int, PixelEnds*);
template void blendRow<4>(std::span<const PvrtcColorPair>, std::span<const PvrtcColorPair>, int, PixelEnds*);

} // namespace pvrtc
