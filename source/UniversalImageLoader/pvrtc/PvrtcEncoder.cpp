#include "PvrtcEncoder.h"

#include "BlockPacking.h"
#include "BlockSearch.h"
#include "RegionMap.h"
#include "SideBySide.h"
#include "StartColors.h"

namespace pvrtc {

namespace {

template <class Work>
void forRows(int rows, bool onAllCores, Work work) {
    if (onAllCores)
        sideBySide(static_cast<std::size_t>(rows), [&](std::size_t row) { work(static_cast<int>(row)); });
    else
        for (int row = 0; row < rows; ++row)
            work(row);
}

template <int Bits>
void setUp(const WorkingImage& image, BlockGrid& grid) {
    static const UniformColors uniformColors;
    const int columns = grid.columns();
    const int rows = grid.rows();
    std::vector<StartEnds> starts(static_cast<std::size_t>(columns) * rows);
    forRows(rows, true, [&](int row) {
        for (int column = 0; column < columns; ++column)
            starts[static_cast<std::size_t>(row) * columns + column] =
                analyseFootprint<Bits>(PixelWindow<Bits>(image, column, row), grid.at(column, row));
    });
    forRows(rows, true, [&](int row) {
        for (int column = 0; column < columns; ++column) {
            const StartEnds* around[9];
            for (int place = 0; place < 9; ++place) {
                const int x = (column + place % 3 - 1 + columns) % columns;
                const int y = (row + place / 3 - 1 + rows) % rows;
                around[place] = &starts[static_cast<std::size_t>(y) * columns + x];
            }
            BlockRecord& record = grid.at(column, row);
            record.fewRegions =
                !record.flat && RegionMap<Bits>(PixelWindow<Bits>(image, column, row)).isCoarse();
            setUpStandardRepStarts<Bits>(around, uniformColors, record);
        }
    });
}

/// The blocks of a sweep are every second one in both directions, so that none of them are neighbours.
struct Sweep {
    int firstColumn;
    int firstRow;
};
constexpr Sweep sweeps[] = {{0, 0}, {1, 1}, {1, 0}, {0, 1}};

template <int Bits>
void search(const WorkingImage& image, BlockGrid& grid) {
    // An odd number of rows makes the last one a neighbour of the first one of the same sweep.
    const bool onAllCores = grid.rows() % 2 == 0;
    std::uint8_t stamp = 0;
    for (int number = 0; number < passCount; ++number) {
        const PassSettings pass(number);
        for (const Sweep& sweep : sweeps) {
            ++stamp;
            forRows((grid.rows() - sweep.firstRow + 1) / 2, onAllCores, [&](int row) {
                BlockSearch<Bits> blockSearch(image, grid);
                for (int column = sweep.firstColumn; column < grid.columns(); column += 2)
                    blockSearch.optimiseRegion(column, row * 2 + sweep.firstRow, pass, stamp);
            });
        }
    }
}

template <int Bits>
std::vector<std::uint8_t> encode(const std::uint8_t* rgba, int width, int height) {
    const WorkingImage image(rgba, width, height);
    BlockGrid grid(width / pvrtcBlockWidth(Bits), height / pvrtcBlockHeight);
    setUp<Bits>(image, grid);
    search<Bits>(image, grid);
    return packBlocks<Bits>(image, grid);
}

} // namespace

} // namespace pvrtc

std::vector<std::uint8_t> pvrtcEncode(const std::uint8_t* rgba, int width, int height, int bits) {
    constexpr int largest = pvrtc::WorkingImage::pitch;
    if (width <= 0 || height <= 0 || width > largest || height > largest ||
        width % pvrtcBlockWidth(bits) != 0 || height % pvrtcBlockHeight != 0)
        return {};
    return bits == 2 ? pvrtc::encode<2>(rgba, width, height) : pvrtc::encode<4>(rgba, width, height);
}
