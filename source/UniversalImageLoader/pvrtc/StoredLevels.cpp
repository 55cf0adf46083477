#include "StoredLevels.h"

#include "SideBySide.h"

namespace pvrtc {

namespace {

/// Sum of the squared differences of all channels at a level.
std::int32_t squaredDifference(PixelEnds ends, Int16x8 target, int level) {
    const Int16x8 difference = target - modulated(ends, static_cast<std::int16_t>(level));
    const Int32x4 squares = multiplyAddPairs(difference, difference);
    return squares[0] + squares[1];
}

} // namespace

/// A row of blocks, with the rows of pixels next to it.
class StoredLevels::Stripe {
public:
    Stripe(StoredLevels& levels, int row);

    void chooseSeparately();
    void chooseJointly();

private:
    static constexpr int lines = pvrtcBlockHeight + 2;

    int wrappedX(int x) const { return x < 0 ? x + m_width : x >= m_width ? x - m_width : x; }
    int wrappedY(int y) const { return y < 0 ? y + m_height : y >= m_height ? y - m_height : y; }
    std::uint8_t& level(int x, int line) { return m_levels.level(x, m_top + line); }
    bool hasTwoLevels(int x, int line) const;
    template <class Visit>
    void forAround(int x, int line, Visit visit) const;
    int interpolatedLevel(int x, int y, int mode) const;
    std::int32_t error(int x, int line, int level) const;
    std::int32_t jointError(int x, int line) const;
    int jointLevel(int x, int line);

    StoredLevels& m_levels;
    int m_width;
    int m_height;
    int m_top; ///< y of line 0, which may be -1
    std::vector<PixelEnds> m_ends[lines];
    std::vector<PixelPlace> m_places[lines];
    const std::uint32_t* m_pixels[lines];
};

StoredLevels::Stripe::Stripe(StoredLevels& levels, int row)
    : m_levels(levels), m_width(levels.m_image.width()), m_height(levels.m_image.height()),
      m_top(row * pvrtcBlockHeight - 1) {
    for (int line = 0; line < lines; ++line) {
        const int y = wrappedY(m_top + line);
        m_ends[line].resize(static_cast<std::size_t>(m_width));
        levels.m_colors.blendPixels<2>(y, m_ends[line].data());
        m_pixels[line] = levels.m_image.row(y);
        m_places[line].reserve(m_ends[line].size());
        for (std::size_t x = 0; x < m_ends[line].size(); ++x)
            m_places[line].emplace_back(m_ends[line][x], bytesTwice(m_pixels[line][x]));
    }
}

bool StoredLevels::Stripe::hasTwoLevels(int x, int line) const {
    const int y = m_top + line;
    const int mode = m_levels.mode(x, y);
    const bool isFirst = x % 8 == 0 && y % 4 == 0;
    const bool isCentre = x % 8 == 4 && y % 4 == 2;
    return mode == OneBit || isFirst || (isCentre && mode != Cross);
}

std::int32_t StoredLevels::Stripe::error(int x, int line, int level) const {
    const auto at = static_cast<std::size_t>(x);
    return squaredDifference(m_ends[line][at], bytesTwice(m_pixels[line][at]), level);
}

/// Calls `visit` with place, mode and weight (of four in all) of each pixel that a stored one is interpolated
/// into.
template <class Visit>
void StoredLevels::Stripe::forAround(int x, int line, Visit visit) const {
    constexpr int steps[4][2] = {{-1, 0}, {1, 0}, {0, -1}, {0, 1}};
    constexpr int weights[2][4] = {{0, 1, 0, 2}, {0, 1, 2, 0}}; // above or below, beside, by mode
    for (const auto& step : steps) {
        const int beside = wrappedX(x + step[0]);
        const int mode = m_levels.mode(beside, wrappedY(m_top + line + step[1]));
        const int weight = weights[step[1] == 0][mode];
        if (weight != 0)
            visit(beside, line + step[1], mode, weight);
    }
}

int StoredLevels::Stripe::interpolatedLevel(int x, int line, int mode) const {
    const int y = wrappedY(m_top + line);
    const auto levels = [&](int dx, int dy) {
        return int{m_levels.level(wrappedX(x + dx), wrappedY(y + dy))};
    };
    if (mode == Across)
        return (levels(-1, 0) + levels(1, 0) + 1) / 2;
    if (mode == Down)
        return (levels(0, -1) + levels(0, 1) + 1) / 2;
    return (levels(-1, 0) + levels(1, 0) + levels(0, -1) + levels(0, 1) + 2) / 4;
}

/// The error of a stored pixel and of those that are interpolated from it.
std::int32_t StoredLevels::Stripe::jointError(int x, int line) const {
    std::int32_t sum = error(x, line, m_levels.level(x, m_top + line));
    forAround(x, line, [&](int besideX, int besideLine, int mode, int) {
        sum += error(besideX, besideLine, interpolatedLevel(besideX, besideLine, mode));
    });
    return sum;
}

/// The level that suits a stored pixel and those that are interpolated from it best, but for rounding: each
/// one's error is a parabola over its level.
int StoredLevels::Stripe::jointLevel(int x, int line) {
    const PixelPlace& own = m_places[line][static_cast<std::size_t>(x)];
    const int current = level(x, line);
    std::int32_t place = 128 * own.dot;    // eight times,
    std::int32_t square = 16 * own.square; // and sixteen times as much as for the pixel alone
    forAround(x, line, [&](int besideX, int besideLine, int mode, int weight) {
        const PixelPlace& beside = m_places[besideLine][static_cast<std::size_t>(besideX)];
        const int between = interpolatedLevel(besideX, besideLine, mode);
        place += weight * (32 * beside.dot - 4 * between * beside.square) +
                 weight * weight * current * beside.square;
        square += weight * weight * beside.square;
    });
    return nearestLevel(place * 2, square, hasTwoLevels(x, line));
}

void StoredLevels::Stripe::chooseSeparately() {
    for (int line = 1; line <= pvrtcBlockHeight; ++line)
        for (int x = 0; x < m_width; ++x) {
            const PixelPlace& place = m_places[line][static_cast<std::size_t>(x)];
            level(x, line) =
                static_cast<std::uint8_t>(nearestLevel(place.dot * 16, place.square, hasTwoLevels(x, line)));
        }
}

void StoredLevels::Stripe::chooseJointly() {
    for (int line = 1; line <= pvrtcBlockHeight; ++line)
        for (int x = (m_top + line) % 2; x < m_width; x += 2) {
            std::uint8_t& chosen = level(x, line);
            const auto before = chosen;
            const auto better = static_cast<std::uint8_t>(jointLevel(x, line));
            if (better == before)
                continue;
            const std::int32_t errorBefore = jointError(x, line);
            chosen = better;
            if (jointError(x, line) >= errorBefore)
                chosen = before;
        }
}

StoredLevels::StoredLevels(const WorkingImage& image, const BlockGrid& grid, const ColorRows& colors)
    : m_image(image), m_grid(grid), m_colors(colors),
      m_levels(static_cast<std::size_t>(image.width()) * image.height()) {}

void StoredLevels::choose() {
    const auto rows = static_cast<std::size_t>(m_grid.rows());
    sideBySide(rows, [this](std::size_t row) { Stripe(*this, static_cast<int>(row)).chooseSeparately(); });
    // Every second row of blocks at a time: between them lie all pixels that two of them have to do with.
    constexpr int rounds = 2;
    for (int round = 0; round < rounds; ++round)
        for (const std::size_t first : {0, 1}) {
            const auto work = [&](std::size_t number) {
                Stripe(*this, static_cast<int>(number * 2 + first)).chooseJointly();
            };
            const std::size_t count = (rows - first + 1) / 2;
            if (rows % 2 == 0)
                sideBySide(count, work);
            else
                for (std::size_t number = 0; number < count; ++number)
                    work(number);
        }
}

std::uint32_t StoredLevels::modulation(int column, int row) const {
    const int own = m_grid.at(column, row).mode;
    std::uint32_t word = 0;
    for (int y = 0; y < pvrtcBlockHeight; ++y)
        for (int x = 0; x < 8; ++x) {
            const std::uint32_t here = level(column * 8 + x, row * pvrtcBlockHeight + y);
            const int pixel = x + 8 * y;
            if (own == OneBit)
                word |= here / 8 << pixel;
            else if ((x + y) % 2 == 0)
                word |= (here * 3 + 4) / 8 << pixel / 2 * 2; // 0, 3, 5, 8 have the values 0 to 3
        }
    // The low bits of the first pixel and of the one at the centre choose the interpolation.
    constexpr std::uint32_t centreBit = 1U << 20U;
    if (own == Cross)
        word &= ~1U;
    if (own == Across)
        word = (word | 1U) & ~centreBit;
    if (own == Down)
        word |= 1U | centreBit;
    return word;
}

} // namespace pvrtc
