#include "PvrtcYardstick.h"

#include "PvrtcYardstickColors.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace {

using Pixel = std::array<int, 4>;

struct Block {
    PvrtcColorPair colors{};
    int mode = 0;
};

/// Number of a 2-bit block's mode.
enum TwoBitMode { OneBit, Cross, Horizontal, Vertical };

int squaredDistance(const Pixel& a, const Pixel& b) {
    int sum = 0;
    for (std::size_t channel = 0; channel < 4; ++channel)
        sum += (a[channel] - b[channel]) * (a[channel] - b[channel]);
    return sum;
}

/// A pixel's two blended colours.
struct Ends {
    Pixel low;
    Pixel high;

    Pixel at(int eighths) const {
        Pixel pixel{};
        for (std::size_t channel = 0; channel < 4; ++channel)
            pixel[channel] = (low[channel] * (8 - eighths) + high[channel] * eighths) >> 3;
        return pixel;
    }
};

class Yardstick {
public:
    Yardstick(const std::uint8_t* rgba, int width, int height, int bits)
        : m_rgba(rgba), m_width(width), m_height(height), m_bits(bits), m_blockWidth(pvrtcBlockWidth(bits)),
          m_columns(width / m_blockWidth), m_rows(height / 4),
          m_blocks(static_cast<std::size_t>(m_columns) * m_rows), m_unit(1 / float(m_blockWidth * 4)),
          m_levels(static_cast<std::size_t>(width) * height), m_ends(m_levels.size()) {}

    std::vector<std::uint8_t> encode();

private:
    Block& block(int column, int row) {
        return m_blocks[static_cast<std::size_t>(row & (m_rows - 1)) * m_columns +
                        (column & (m_columns - 1))];
    }
    std::size_t pixelIndex(int x, int y) const {
        return static_cast<std::size_t>(y & (m_height - 1)) * m_width + (x & (m_width - 1));
    }
    Pixel target(std::size_t index) const {
        const std::uint8_t* pixel = m_rgba + index * 4;
        return {pixel[0], pixel[1], pixel[2], pixel[3]};
    }

    template <class Visit>
    void forBlocks(Visit visit) {
        for (int row = 0; row < m_rows; ++row)
            for (int column = 0; column < m_columns; ++column)
                visit(column, row);
    }
    void startColors(int column, int row);
    void blendColors();
    void chooseModulation();
    void chooseModulation4(int column, int row);
    int chooseLevels2(int column, int row, int mode);
    int interpolatedLevel(int x, int y, int mode) const;
    void chooseModulation2();
    struct OtherBlocks {
        std::array<const PvrtcColorPair*, 3> pairs;
        std::array<float, 3> weights;

        float blended(std::size_t which, std::size_t channel) const {
            return float((*pairs[0])[which][channel]) * weights[0] +
                   float((*pairs[1])[which][channel]) * weights[1] +
                   float((*pairs[2])[which][channel]) * weights[2];
        }
    };
    OtherBlocks otherBlocks(int column, int row, int fromX, int fromY);
    void leastSquares(int column, int row);
    std::uint32_t packedModulation(int column, int row) const;

    const std::uint8_t* m_rgba;
    int m_width;
    int m_height;
    int m_bits;
    int m_blockWidth;
    int m_columns;
    int m_rows;
    std::vector<Block> m_blocks;
    float m_unit;                       ///< weights of all blocks that reach a pixel add up to 1 / m_unit
    std::vector<std::uint8_t> m_levels; ///< eighths, or punchThrough
    std::vector<Ends> m_ends;
};

constexpr std::uint8_t punchThrough = 0x80;

void Yardstick::startColors(int column, int row) {
    Pixel lowest;
    Pixel highest;
    lowest.fill(255);
    highest.fill(0);
    for (int y = row * 4; y < row * 4 + 4; ++y)
        for (int x = column * m_blockWidth; x < (column + 1) * m_blockWidth; ++x) {
            const Pixel pixel = target(pixelIndex(x, y));
            for (std::size_t channel = 0; channel < 4; ++channel) {
                lowest[channel] = std::min(lowest[channel], pixel[channel]);
                highest[channel] = std::max(highest[channel], pixel[channel]);
            }
        }
    const auto stored = [](const Pixel& color, bool isLow) {
        return nearestColor({float(color[0]) / 255 * 31, float(color[1]) / 255 * 31,
                             float(color[2]) / 255 * 31, float(color[3]) / 255 * 15},
                            isLow);
    };
    block(column, row).colors = {stored(lowest, true), stored(highest, false)};
}

void Yardstick::blendColors() {
    for (int y = 0; y < m_height; ++y) {
        const int row = (y + 2) / 4;
        const int below = (y + 2) % 4;
        for (int x = 0; x < m_width; ++x) {
            const int column = (x + m_blockWidth / 2) / m_blockWidth;
            const int right = (x + m_blockWidth / 2) % m_blockWidth;
            const int left = m_blockWidth - right;
            const PvrtcColorPair* corners[4] = {&block(column - 1, row - 1).colors,
                                                &block(column, row - 1).colors,
                                                &block(column - 1, row).colors, &block(column, row).colors};
            const int weights[4] = {left * (4 - below), right * (4 - below), left * below, right * below};
            Ends& ends = m_ends[pixelIndex(x, y)];
            for (std::size_t channel = 0; channel < 4; ++channel) {
                int low = 0;
                int high = 0;
                for (int corner = 0; corner < 4; ++corner) {
                    low += (*corners[corner])[0][channel] * weights[corner];
                    high += (*corners[corner])[1][channel] * weights[corner];
                }
                ends.low[channel] = pvrtcBlend(low, channel == 3, m_bits);
                ends.high[channel] = pvrtcBlend(high, channel == 3, m_bits);
            }
        }
    }
}

void Yardstick::chooseModulation4(int column, int row) {
    std::array<std::array<std::uint8_t, 16>, 2> levels{};
    std::array<int, 2> errors{};
    for (int pixel = 0; pixel < 16; ++pixel) {
        const std::size_t index = pixelIndex(column * 4 + pixel % 4, row * 4 + pixel / 4);
        const Pixel wanted = target(index);
        const Ends& ends = m_ends[index];
        const auto take = [&](int mode, int& best, std::uint8_t level, int error) {
            if (error < best) {
                best = error;
                levels[static_cast<std::size_t>(mode)][static_cast<std::size_t>(pixel)] = level;
            }
        };
        const int atLow = squaredDistance(wanted, ends.low);
        const int atHigh = squaredDistance(wanted, ends.high);
        Pixel middle = ends.at(4);
        std::array<int, 2> best;
        best.fill(std::numeric_limits<int>::max());
        for (int mode = 0; mode < 2; ++mode) {
            take(mode, best[mode], 0, atLow);
            take(mode, best[mode], 8, atHigh);
        }
        take(0, best[0], 3, squaredDistance(wanted, ends.at(3)));
        take(0, best[0], 5, squaredDistance(wanted, ends.at(5)));
        take(1, best[1], 4, squaredDistance(wanted, middle));
        middle[3] = 0;
        take(1, best[1], punchThrough, squaredDistance(wanted, middle));
        errors[0] += best[0];
        errors[1] += best[1];
    }
    Block& own = block(column, row);
    own.mode = errors[1] < errors[0] ? 1 : 0;
    for (int pixel = 0; pixel < 16; ++pixel)
        m_levels[pixelIndex(column * 4 + pixel % 4, row * 4 + pixel / 4)] =
            levels[static_cast<std::size_t>(own.mode)][static_cast<std::size_t>(pixel)];
}

/// Chooses the stored levels of a 2-bit block; returns the squared error of the pixels that have them.
int Yardstick::chooseLevels2(int column, int row, int mode) {
    int total = 0;
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 8; ++x) {
            if (mode != OneBit && (x + y) % 2 != 0)
                continue;
            const bool twoLevels =
                mode == OneBit || (x == 0 && y == 0) || (mode != Cross && x == 4 && y == 2);
            const std::size_t index = pixelIndex(column * 8 + x, row * 4 + y);
            const Pixel wanted = target(index);
            int best = std::numeric_limits<int>::max();
            for (const int level : {0, 3, 5, 8}) {
                if (twoLevels && level % 8 != 0)
                    continue;
                const int error = squaredDistance(wanted, m_ends[index].at(level));
                if (error < best) {
                    best = error;
                    m_levels[index] = static_cast<std::uint8_t>(level);
                }
            }
            total += best;
        }
    return total;
}

int Yardstick::interpolatedLevel(int x, int y, int mode) const {
    const int across = m_levels[pixelIndex(x - 1, y)] + m_levels[pixelIndex(x + 1, y)];
    const int down = m_levels[pixelIndex(x, y - 1)] + m_levels[pixelIndex(x, y + 1)];
    if (mode == Cross)
        return (across + down + 2) / 4;
    return ((mode == Horizontal ? across : down) + 1) / 2;
}

void Yardstick::chooseModulation2() {
    // First as if all blocks interpolated in both directions, so that each block's modes see levels around
    // them.
    forBlocks([this](int column, int row) { chooseLevels2(column, row, Cross); });
    for (int row = 0; row < m_rows; ++row)
        for (int column = 0; column < m_columns; ++column) {
            int best = std::numeric_limits<int>::max();
            for (const int mode : {OneBit, Horizontal, Vertical, Cross}) {
                int error = chooseLevels2(column, row, mode);
                for (int y = row * 4; mode != OneBit && y < row * 4 + 4; ++y)
                    for (int x = column * 8 + 1 - y % 2; x < column * 8 + 8; x += 2) {
                        const std::size_t index = pixelIndex(x, y);
                        error +=
                            squaredDistance(target(index), m_ends[index].at(interpolatedLevel(x, y, mode)));
                    }
                if (error < best) {
                    best = error;
                    block(column, row).mode = mode;
                }
            }
        }
    forBlocks([this](int column, int row) { chooseLevels2(column, row, block(column, row).mode); });
    for (int y = 0; y < m_height; ++y)
        for (int x = 1 - y % 2; x < m_width; x += 2) {
            const int mode = block(x / 8, y / 4).mode;
            if (mode != OneBit)
                m_levels[pixelIndex(x, y)] = static_cast<std::uint8_t>(interpolatedLevel(x, y, mode));
        }
}

void Yardstick::chooseModulation() {
    blendColors();
    if (m_bits == 2)
        return chooseModulation2();
    forBlocks([this](int column, int row) { chooseModulation4(column, row); });
}

/// The blocks that reach a pixel beside the one whose centre it is seen from: one beside that one, one above
/// or below, one at the corner. `fromX`, `fromY`: place of the pixel from the centre.
Yardstick::OtherBlocks Yardstick::otherBlocks(int column, int row, int fromX, int fromY) {
    const int stepX = fromX < 0 ? -1 : 1;
    const int stepY = fromY < 0 ? -1 : 1;
    const auto awayX = float(std::abs(fromX));
    const auto awayY = float(std::abs(fromY));
    const auto nearX = float(m_blockWidth) - awayX;
    const float nearY = 4 - awayY;
    return {{&block(column + stepX, row).colors, &block(column, row + stepY).colors,
             &block(column + stepX, row + stepY).colors},
            {awayX * nearY * m_unit, nearX * awayY * m_unit, awayX * awayY * m_unit}};
}

/// The two colours of a block that fit all pixels which they reach best, with all other blocks as they are.
void Yardstick::leastSquares(int column, int row) {
    const int centreX = column * m_blockWidth + m_blockWidth / 2;
    const int centreY = row * 4 + 2;
    Equations equations;
    for (int fromY = -3; fromY <= 3; ++fromY)
        for (int fromX = 1 - m_blockWidth; fromX < m_blockWidth; ++fromX) {
            const std::size_t index = pixelIndex(centreX + fromX, centreY + fromY);
            const bool transparent = m_levels[index] == punchThrough;
            const float share = transparent ? 0.5F : float(m_levels[index]) / 8;
            const float weight = float((m_blockWidth - std::abs(fromX)) * (4 - std::abs(fromY))) * m_unit;
            const float lowWeight = weight * (1 - share);
            const float highWeight = weight * share;
            equations.normal.add(lowWeight, highWeight);
            if (!transparent)
                equations.alphaNormal.add(lowWeight, highWeight);
            const OtherBlocks others = otherBlocks(column, row, fromX, fromY);
            for (std::size_t channel = 0; channel < (transparent ? 3 : 4); ++channel) {
                const float scale = channel == 3 ? 15.0F / 255 : 31.0F / 255;
                const float rest = float(m_rgba[index * 4 + channel]) * scale -
                                   others.blended(0, channel) * (1 - share) -
                                   others.blended(1, channel) * share;
                equations.low[channel] += lowWeight * rest;
                equations.high[channel] += highWeight * rest;
            }
        }
    block(column, row).colors = solved(equations, block(column, row).colors);
}

std::uint32_t Yardstick::packedModulation(int column, int row) const {
    const int mode = m_blocks[static_cast<std::size_t>(row) * m_columns + column].mode;
    const auto storedValue = [](std::uint8_t level) -> std::uint32_t {
        return level == punchThrough ? 2 : level < 3 ? 0 : level < 5 ? 1 : level < 8 ? 2 : 3;
    };
    std::uint32_t word = 0;
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < m_blockWidth; ++x) {
            const std::uint8_t level = m_levels[pixelIndex(column * m_blockWidth + x, row * 4 + y)];
            if (m_bits == 4)
                word |= storedValue(level) << 2 * (x + 4 * y);
            else if (mode == OneBit)
                word |= static_cast<std::uint32_t>(level / 8) << (x + 8 * y);
            else if ((x + y) % 2 == 0)
                word |= storedValue(level) << (x + 8 * y) / 2 * 2;
        }
    if (m_bits == 2 && mode != OneBit)
        word = mode == Cross ? word & ~1U : word | 1U;
    if (m_bits == 2 && (mode == Horizontal || mode == Vertical))
        word = mode == Horizontal ? word & ~(1U << 20) : word | 1U << 20;
    return word;
}

std::vector<std::uint8_t> Yardstick::encode() {
    forBlocks([this](int column, int row) { startColors(column, row); });
    constexpr int rounds = 6;
    for (int round = 0; round < rounds; ++round) {
        chooseModulation();
        forBlocks([this](int column, int row) { leastSquares(column, row); });
    }
    chooseModulation();

    std::vector<std::uint8_t> data(m_blocks.size() * pvrtcBlockBytes);
    const std::vector<std::uint32_t> order = pvrtcBlockOrder(m_columns, m_rows);
    for (std::size_t index = 0; index < m_blocks.size(); ++index) {
        const auto column = static_cast<int>(index % static_cast<std::size_t>(m_columns));
        const auto row = static_cast<int>(index / static_cast<std::size_t>(m_columns));
        const std::uint32_t colors =
            pvrtcPackColors(m_blocks[index].colors) | (m_blocks[index].mode != 0 ? 1U : 0U);
        const std::uint64_t whole = packedModulation(column, row) | std::uint64_t{colors} << 32U;
        for (int byte = 0; byte < pvrtcBlockBytes; ++byte)
            data[std::size_t{order[index]} * pvrtcBlockBytes + static_cast<std::size_t>(byte)] =
                static_cast<std::uint8_t>(whole >> 8 * byte);
    }
    return data;
}

} // namespace

std::vector<std::uint8_t> yardstickEncode(const std::uint8_t* rgba, int width, int height, int bits) {
    return Yardstick(rgba, width, height, bits).encode();
}
