#include "Footprint.h"

#include "BlendedRow.h"

#include <cstdlib>

namespace pvrtc {

namespace {

/// Weights of the block columns (left, own, right) by lane of a row and of the block rows (above, own, below)
/// by row.
template <int Bits>
struct BlendWeights {
    std::int16_t across[3][Footprint<Bits>::rowLanes];
    std::int16_t down[3][Footprint<Bits>::rows][8]; ///< the same eight times
};

/// Weight of block `block` (-1, 0, 1) at a place along blocks of a length. A block that wraps around to
/// itself has all the weight, on its own pixels alone: each of them is seen once.
constexpr int blendWeight(int place, int block, int length, bool alone) {
    if (alone)
        return block == 0 && place >= 0 && place < length ? length : 0;
    const int distance = place - block * length - length / 2;
    return std::max(0, length - (distance < 0 ? -distance : distance));
}

template <int Bits>
constexpr BlendWeights<Bits> blendWeights(bool oneColumn, bool oneRow) {
    using Lanes = Footprint<Bits>;
    using Window = PixelWindow<Bits>;
    BlendWeights<Bits> weights{};
    for (int block = -1; block <= 1; ++block) {
        for (int lane = 0; lane < Lanes::rowLanes; ++lane) {
            const int x = Lanes::windowX(lane) - Window::ownX;
            const bool empty = blendWeight(x, 0, Window::blockWidth, oneColumn) == 0;
            const int weight = empty ? 0 : blendWeight(x, block, Window::blockWidth, oneColumn);
            weights.across[block + 1][lane] = static_cast<std::int16_t>(weight);
        }
        for (int row = 0; row < Lanes::rows; ++row) {
            const int y = Lanes::windowY(row * Lanes::rowLanes) - Window::ownY;
            for (std::int16_t& weight : weights.down[block + 1][row])
                weight = static_cast<std::int16_t>(blendWeight(y, block, pvrtcBlockHeight, oneRow));
        }
    }
    return weights;
}

template <int Bits>
inline constexpr BlendWeights<Bits> allWeights[2][2] = {
    {blendWeights<Bits>(false, false), blendWeights<Bits>(false, true)},
    {blendWeights<Bits>(true, false), blendWeights<Bits>(true, true)}};

/// The block itself and those around it.
struct Neighbourhood {
    Neighbourhood(const BlockGrid& grid, int column, int row) {
        for (int y = 0; y < 3; ++y)
            for (int x = 0; x < 3; ++x)
                records[y][x] = &grid.at(column + x - 1, row + y - 1);
    }
    const BlockRecord* records[3][3];
};

/// The pixels of a row of lanes, eight at a time.
Int32x8 rowPixels(const std::uint32_t (&line)[9], int) { return load<Int32x8>(line + 1); }
Int32x8 rowPixels(const std::uint32_t (&line)[17], int half) {
    const auto left = load<Int32x8>(line);
    const auto right = load<Int32x8>(line + 8);
    return half == 0 ? __builtin_shufflevector(left, right, 0, 2, 4, 6, 8, 10, 12, 14)
                     : __builtin_shufflevector(left, right, 1, 3, 5, 7, 9, 11, 13, 15);
}

template <int Bits>
void loadPixels(const PixelWindow<Bits>& window, const BlendWeights<Bits>& weights,
                Footprint<Bits>& footprint) {
    using Lanes = Footprint<Bits>;
    for (int row = 0; row < Lanes::rows; ++row)
        for (int half = 0; half < Lanes::rowLanes / 8; ++half) {
            const int at = row * Lanes::rowLanes + half * 8;
            const Int32x8 pixels = rowPixels(window.pixels[row + 1], half);
            const Int16x8 weight =
                load<Int16x8>(weights.across[1] + half * 8) * load<Int16x8>(weights.down[1][row]);
            store(footprint.weight + at, weight);
            for (int channel = 0; channel < 4; ++channel)
                store(footprint.target[channel] + at, narrowed(pixels >> 8 * channel & 0xFF) & (weight > 0));
        }
}

/// A channel of a colour of the 3 x 3 blocks, without the one in the middle.
struct ChannelAround {
    ChannelAround(const Neighbourhood& blocks, std::size_t which, std::size_t channel) {
        for (int y = 0; y < 3; ++y)
            for (int x = 0; x < 3; ++x)
                values[y][x] = Int16x8{} + blocks.records[y][x]->colors[which][channel];
        values[1][1] = Int16x8{};
    }
    Int16x8 values[3][3];
};

template <int Bits>
void loadBase(const Neighbourhood& blocks, const BlendWeights<Bits>& weights, Footprint<Bits>& footprint) {
    using Lanes = Footprint<Bits>;
    for (std::size_t which = 0; which < 2; ++which)
        for (std::size_t channel = 0; channel < 4; ++channel) {
            const ChannelAround around(blocks, which, channel);
            for (int half = 0; half < Lanes::rowLanes / 8; ++half) {
                Int16x8 lines[3] = {};
                for (int y = 0; y < 3; ++y)
                    for (int x = 0; x < 3; ++x)
                        lines[y] += around.values[y][x] * load<Int16x8>(weights.across[x] + half * 8);
                std::int16_t* base = footprint.base[which][channel] + half * 8;
                for (int row = 0; row < Lanes::rows; ++row) {
                    const auto down = [&](int y) { return lines[y] * load<Int16x8>(weights.down[y][row]); };
                    store(base + row * Lanes::rowLanes, down(0) + down(1) + down(2));
                }
            }
        }
}

constexpr std::int16_t mask(bool set) { return set ? -1 : 0; }

/// Eight lanes of a row, with what the blocks to the left, its own and to the right have.
template <int Bits>
Int16x8 byBlock(std::int16_t left, std::int16_t own, std::int16_t right) {
    if constexpr (Bits == 2)
        return Int16x8{left, left, own, own, own, own, right, right};
    else
        return Int16x8{left, own, own, own, own, right, right, right};
}

void loadModes(const Neighbourhood& blocks, Footprint<4>& footprint) {
    using Lanes = Footprint<4>;
    for (int own = 0; own < modeCount(4); ++own) {
        LaneModes<4>& modes = footprint.modes[own];
        for (int y = 0; y < 3; ++y) {
            const auto punches = [&](int x) {
                return mask((y == 1 && x == 1 ? own : blocks.records[y][x]->mode) == PunchThrough);
            };
            store(modes.punchThrough[y], byBlock<4>(punches(0), punches(1), punches(2)));
        }
        // With an alpha of half or more, the value without punch-through is never worse.
        Int16x8 any{};
        for (int row = 0; row < Lanes::rows; ++row)
            any |= load<Int16x8>(modes.punchThrough[Lanes::blockRow(row)]) &
                   (load<Int16x8>(footprint.target[3] + row * Lanes::rowLanes) < 128) &
                   (load<Int16x8>(footprint.weight + row * Lanes::rowLanes) > 0);
        const Int32x4 folded = reinterpret_cast<Int32x4>(any);
        modes.punches = (folded[0] | folded[1] | folded[2] | folded[3]) != 0;
    }
}

void loadModes(const Neighbourhood& blocks, Footprint<2>& footprint) {
    constexpr std::int16_t acrossOfMode[] = {0, 1, 2, 0};
    constexpr std::int16_t downOfMode[] = {0, 1, 0, 2};
    for (int own = 0; own < modeCount(2); ++own) {
        LaneModes<2>& modes = footprint.modes[own];
        modes.oneDirection = own == Across || own == Down;
        for (int y = 0; y < 3; ++y) {
            const auto mode = [&](int x) { return y == 1 && x == 1 ? own : int{blocks.records[y][x]->mode}; };
            const auto fill = [&](std::int16_t* lanes, auto value) {
                const Int16x8 half = byBlock<2>(value(mode(0)), value(mode(1)), value(mode(2)));
                store(lanes, half);
                store(lanes + 8, half);
            };
            fill(modes.oneBit[y], [](int of) { return mask(of == OneBit); });
            fill(modes.across[y], [&](int of) { return acrossOfMode[of]; });
            fill(modes.down[y], [&](int of) { return downOfMode[of]; });
        }
    }
}

/// A stored pixel next to a 2-bit footprint: one that lies in a line with block centres, so that two blocks
/// alone reach it.
struct OutsidePixel {
    const BlockRecord& first;
    const BlockRecord& second;
    int firstWeight;
    int secondWeight;
    const BlockRecord& owner;
    bool isCentre; ///< of its block

    /// The best one for itself.
    std::int16_t level(std::uint32_t pixel) const {
        const PixelEnds ends =
            blendedEnds<2>(weighted(first.colors, firstWeight) + weighted(second.colors, secondWeight));
        const PixelPlace place(ends, bytesTwice(pixel));
        const bool twoLevels = owner.mode == OneBit || (isCentre && owner.mode != Cross);
        return static_cast<std::int16_t>(nearestLevel(place.dot * 16, place.square, twoLevels));
    }
};

/// Block centres lie at every eighth column and every fourth row of the window from 0 on.
void loadOutside(const PixelWindow<2>& window, const Neighbourhood& blocks, Footprint<2>& footprint) {
    for (auto& line : footprint.outside)
        std::fill(std::begin(line), std::end(line), 0);
    // The even columns of the rows at the centres of the blocks above and below.
    for (const int y : {0, 8})
        for (int x = 2; x < 16; x += 2) {
            const auto& line = blocks.records[y / 4];
            const OutsidePixel pixel{*line[x / 8], *line[x / 8 + 1],   (8 - x % 8) * 4,
                                     x % 8 * 4,    *line[(x + 4) / 8], x == 8};
            footprint.outside[y][x / 2] = pixel.level(window.pixels[y][x]);
        }
    // The even rows of the columns at the centres of the blocks to the left and to the right.
    for (const int x : {0, 16})
        for (const int y : {2, 4, 6}) {
            const auto record = [&](int line) -> const BlockRecord& { return *blocks.records[line][x / 8]; };
            const OutsidePixel pixel{record(y / 4), record(y / 4 + 1),   (4 - y % 4) * 8,
                                     y % 4 * 8,     record((y + 2) / 4), y == 4};
            footprint.outside[y][x / 2] = pixel.level(window.pixels[y][x]);
        }
}

} // namespace

template <int Bits>
void Footprint<Bits>::load(const PixelWindow<Bits>& window, const BlockGrid& grid, int column, int row) {
    const Neighbourhood blocks(grid, column, row);
    const BlendWeights<Bits>& weights = allWeights<Bits>[grid.columns() == 1][grid.rows() == 1];
    loadPixels(window, weights, *this);
    loadBase(blocks, weights, *this);
    loadModes(blocks, *this);
    if constexpr (Bits == 2)
        loadOutside(window, blocks, *this);
    // The eighth row.
    for (auto& channel : target)
        std::fill(channel + rows * rowLanes, std::end(channel), 0);
    for (auto& color : base)
        for (auto& channel : color)
            std::fill(channel + rows * rowLanes, std::end(channel), 0);
    std::fill(weight + rows * rowLanes, std::end(weight), 0);
}

template void Footprint<2>::load(const PixelWindow<2>&, const BlockGrid&, int, int);
template void Footprint<4>::load(const PixelWindow<4>&, const BlockGrid&, int, int);

} // namespace pvrtc
