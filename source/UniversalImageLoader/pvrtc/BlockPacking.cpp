#include "BlockPacking.h"

#include "ColorRows.h"
#include "SideBySide.h"
#include "StoredLevels.h"

namespace pvrtc {

namespace {

/// The value of a 4-bit pixel: that of the lowest squared difference; ties go to 2, then 1, then 0, then 3.
std::uint32_t bestValue(PixelEnds ends, std::uint32_t pixel, bool punchThrough) {
    const Int16x8 target = bytesTwice(pixel);
    const Int16x8 low = lowTwice(ends);
    const Int16x8 high = highTwice(ends);
    constexpr Int16x8 innerLevels[2] = {{3, 3, 3, 3, 5, 5, 5, 5}, {4, 4, 4, 4, 4, 4, 4, 4}};
    Int16x8 inner = low + (((high - low) * innerLevels[punchThrough]) >> 3);
    if (punchThrough)
        inner[7] = 0;
    const Int32x4 outerSquares = multiplyAddPairs(target - ends, target - ends);
    const Int32x4 innerSquares = multiplyAddPairs(target - inner, target - inner);
    const std::int32_t errors[4] = {outerSquares[0] + outerSquares[1], innerSquares[0] + innerSquares[1],
                                    innerSquares[2] + innerSquares[3], outerSquares[2] + outerSquares[3]};
    std::uint32_t best = 2;
    for (const std::uint32_t value : {1U, 0U, 3U})
        if (errors[value] < errors[best])
            best = value;
    return best;
}

void storeBlock(std::uint8_t* to, std::uint32_t modulation, std::uint32_t colors) {
    const std::uint64_t whole = modulation | std::uint64_t{colors} << 32U;
    for (int byte = 0; byte < pvrtcBlockBytes; ++byte)
        to[byte] = static_cast<std::uint8_t>(whole >> 8 * byte);
}

/// Calls `store` with row, column and modulation of each 4-bit block.
template <class Store>
void forModulation4(const WorkingImage& image, const BlockGrid& grid, const ColorRows& colors, Store store) {
    sideBySide(static_cast<std::size_t>(grid.rows()), [&](std::size_t number) {
        const auto row = static_cast<int>(number);
        std::vector<PixelEnds> ends(static_cast<std::size_t>(image.width()));
        std::vector<std::uint32_t> modulation(static_cast<std::size_t>(grid.columns()));
        for (int y = 0; y < pvrtcBlockHeight; ++y) {
            colors.blendPixels<4>(row * pvrtcBlockHeight + y, ends.data());
            const std::uint32_t* pixels = image.row(row * pvrtcBlockHeight + y);
            for (int x = 0; x < image.width(); ++x) {
                const bool punchThrough = grid.at(x / 4, row).mode == PunchThrough;
                modulation[static_cast<std::size_t>(x / 4)] |=
                    bestValue(ends[static_cast<std::size_t>(x)], pixels[x], punchThrough)
                    << 2 * (x % 4 + 4 * y);
            }
        }
        for (int column = 0; column < grid.columns(); ++column)
            store(column, row, modulation[static_cast<std::size_t>(column)]);
    });
}

} // namespace

template <int Bits>
std::vector<std::uint8_t> packBlocks(const WorkingImage& image, const BlockGrid& grid) {
    const ColorRows colors(grid);
    const std::vector<std::uint32_t> order = pvrtcBlockOrder(grid.columns(), grid.rows());
    std::vector<std::uint8_t> data(order.size() * pvrtcBlockBytes);
    const auto packLocalBlock = [&](int column, int row, std::uint32_t modulation) {
        const BlockRecord& record = grid.at(column, row);
        const std::uint32_t modeBit = record.mode == 0 ? 0 : 1;
        const std::uint32_t index = order[static_cast<std::size_t>(row) * grid.columns() + column];
        storeBlock(data.data() + std::size_t{index} * pvrtcBlockBytes, modulation,
                   pvrtcPackColors(record.colors) | modeBit);
    };
    if constexpr (Bits == 4) {
        forModulation4(image, grid, colors, packLocalBlock);
    } else {
        StoredLevels levels(image, grid, colors);
        levels.choose();
        sideBySide(static_cast<std::size_t>(grid.rows()), [&](std::size_t number) {
            for (int column = 0; column < grid.columns(); ++column)
                packLocalBlock(column, static_cast<int>(number),
                               levels.modulation(column, static_cast<int>(number)));
        });
    }
    return data;
}

template std::vector<std::uint8_t> packBlocks<2>(const WorkingImage&, const BlockGrid&);
template std::vector<std::uint8_t> packBlocks<4>(const WorkingImage&, const BlockGrid&);

} // namespace pvrtc
