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

/// Eight lanes of pixels.
struct LanePixels {
    /// `half` of the lanes of a row.
    LanePixels(const std::uint32_t (&line)[9], int)
        : first(load<Int32x4>(line + 1)), second(load<Int32x4>(line + 5)) {}
    LanePixels(const std::uint32_t (&line)[17], int half) {
        const auto everySecond = [&](int from) {
            const auto a = load<Int32x4>(line + from);
            const auto b = load<Int32x4>(line + from + 4);
            return half == 0 ? __builtin_shufflevector(a, b, 0, 2, 4, 6)
                             : __builtin_shufflevector(a, b, 1, 3, 5, 7);
        };
        first = everySecond(0);
        second = everySecond(8);
    }
    Int16x8 channel(int number) const {
        return narrowed(first >> 8 * number & 0xFF, second >> 8 * number & 0xFF);
    }

    Int32x4 first;
    Int32x4 second;
};

template <int Bits>
void loadPixels(const PixelWindow<Bits>& window, const BlendWeights<Bits>& weights,
                Footprint<Bits>& footprint) {
    using Lanes = Footprint<Bits>;
    for (int row = 0; row < Lanes::rows; ++row)
        for (int half = 0; half < Lanes::rowLanes / 8; ++half) {
            const int at = row * Lanes::rowLanes + half * 8;
            const LanePixels pixels(window.pixels[row + 1], half);
            const Int16x8 weight =
                load<Int16x8>(weights.across[1] + half * 8) * load<Int16x8>(weights.down[1][row]);
            store(footprint.weight + at, weight);
            for (int channel = 0; channel < 4; ++channel)
                store(footprint.target[channel] + at, pixels.channel(channel) & (weight > 0));
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
    constexpr std::int16_t oneBit[] = {-1, 0, 0, 0};
    constexpr std::int16_t across[] = {0, 1, 2, 0};
    constexpr std::int16_t down[] = {0, 1, 0, 2};
    const auto fill = [](std::int16_t* lanes, const std::int16_t(&ofMode)[4], int left, int own, int right) {
        const Int16x8 half = byBlock<2>(ofMode[left], ofMode[own], ofMode[right]);
        store(lanes, half);
        store(lanes + 8, half);
    };
    const auto fillLine = [&](LaneModes<2>& modes, int y, int own) {
        const int left = blocks.records[y][0]->mode;
        const int right = blocks.records[y][2]->mode;
        fill(modes.oneBit[y], oneBit, left, own, right);
        fill(modes.across[y], across, left, own, right);
        fill(modes.down[y], down, left, own, right);
    };
    fillLine(footprint.modes[0], 0, blocks.records[0][1]->mode);
    fillLine(footprint.modes[0], 2, blocks.records[2][1]->mode);
    for (int own = 0; own < modeCount(2); ++own) {
        LaneModes<2>& modes = footprint.modes[own];
        if (own != 0)
            modes = footprint.modes[0];
        fillLine(modes, 1, own);
        modes.oneDirection = own == Across || own == Down;
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
