#include "PlainPvrtc.h"

#include <algorithm>
#include <array>

namespace {

class Plain {
public:
    Plain(const std::vector<std::uint8_t>& blocks, int width, int height, int bits)
        : m_blocks(blocks), m_width(width), m_height(height), m_bits(bits), m_blockWidth(bits == 2 ? 8 : 4) {}

    std::array<int, 4> pixel(int x, int y) const {
        const int fromLeft = (x + m_blockWidth / 2) % m_blockWidth;
        const int fromTop = (y + 2) % 4;
        const int column = (x + m_blockWidth / 2) / m_blockWidth + columns() - 1;
        const int row = (y + 2) / 4 + rows() - 1;
        const int level = this->level(x, y);
        std::array<int, 4> result{};
        for (int channel = 0; channel < 4; ++channel) {
            int ends[2];
            for (int end = 0; end < 2; ++end) {
                const auto value = [&](int c, int r) {
                    return color(c, r, end)[static_cast<std::size_t>(channel)];
                };
                const int upper =
                    value(column, row) * (m_blockWidth - fromLeft) + value(column + 1, row) * fromLeft;
                const int lower = value(column, row + 1) * (m_blockWidth - fromLeft) +
                                  value(column + 1, row + 1) * fromLeft;
                ends[end] = widened(upper * (4 - fromTop) + lower * fromTop, channel == 3);
            }
            result[static_cast<std::size_t>(channel)] =
                (ends[0] * (8 - level % 16) + ends[1] * (level % 16)) >> 3;
        }
        if (level >= punchedThrough)
            result[3] = 0;
        return result;
    }

private:
    static constexpr int punchedThrough = 16;

    int columns() const { return m_width / m_blockWidth; }
    int rows() const { return m_height / 4; }

    std::uint32_t word(int column, int row, int half) const {
        column %= columns();
        row %= rows();
        std::size_t index = 0;
        int shift = 0;
        const int shared = std::min(columns(), rows());
        for (int bit = 1; bit < shared; bit *= 2, shift += 2)
            index |= static_cast<std::size_t>((row & bit) / bit + (column & bit) / bit * 2) << shift;
        index |= static_cast<std::size_t>(column / shared + row / shared) << shift;
        const std::uint8_t* bytes = m_blocks.data() + index * 8 + half * 4;
        return bytes[0] | bytes[1] << 8 | bytes[2] << 16 | static_cast<std::uint32_t>(bytes[3]) << 24;
    }

    std::array<int, 4> color(int column, int row, int end) const {
        const std::uint32_t bits = word(column, row, 1) >> 16 * end & 0xFFFF;
        const auto field = [&](int position, int size) {
            return static_cast<int>(bits >> position) & ((1 << size) - 1);
        };
        const auto four = [&](int position) { return field(position, 4) * 2 + field(position, 4) / 8; };
        if (field(15, 1) == 1)
            return {field(10, 5), field(5, 5), end == 1 ? field(0, 5) : four(1), 15};
        const int narrowBlue = field(1, 3) * 4 + field(1, 3) / 2;
        return {four(8), four(4), end == 1 ? four(0) : narrowBlue, field(12, 3) * 2};
    }

    int widened(int sum, bool isAlpha) const {
        if (m_bits == 4)
            return isAlpha ? sum + (sum >> 4) : (sum >> 1) + (sum >> 6);
        return isAlpha ? (sum >> 1) + (sum >> 5) : (sum >> 2) + (sum >> 7);
    }

    bool otherMode(int x, int y) const { return (word(x / m_blockWidth, y / 4, 1) & 1) != 0; }
    int modulation(int x, int y, int position, int size) const {
        return static_cast<int>(word(x / m_blockWidth, y / 4, 0) >> position) & ((1 << size) - 1);
    }

    int stored(int x, int y) const {
        x = (x + m_width) % m_width;
        y = (y + m_height) % m_height;
        const int place = x % 8 + y % 4 * 8;
        if (!otherMode(x, y))
            return modulation(x, y, place, 1) * 8;
        const bool borrowed = place == 0 || (place == 20 && modulation(x, y, 0, 1) == 1);
        const int value = borrowed ? modulation(x, y, place + 1, 1) * 3 : modulation(x, y, place / 2 * 2, 2);
        return std::array{0, 3, 5, 8}[static_cast<std::size_t>(value)];
    }

    int level(int x, int y) const {
        if (m_bits == 4) {
            const auto value = static_cast<std::size_t>(modulation(x, y, (x % 4 + y % 4 * 4) * 2, 2));
            return otherMode(x, y) ? std::array{0, 4, 4 + punchedThrough, 8}[value]
                                   : std::array{0, 3, 5, 8}[value];
        }
        if (!otherMode(x, y) || (x + y) % 2 == 0)
            return stored(x, y);
        const int beside = stored(x - 1, y) + stored(x + 1, y);
        const int stacked = stored(x, y - 1) + stored(x, y + 1);
        if (modulation(x, y, 0, 1) == 0)
            return (beside + stacked + 2) / 4;
        return ((modulation(x, y, 20, 1) == 0 ? beside : stacked) + 1) / 2;
    }

    const std::vector<std::uint8_t>& m_blocks;
    int m_width;
    int m_height;
    int m_bits;
    int m_blockWidth;
};

} // namespace

std::vector<std::uint8_t> plainPvrtcDecode(const std::vector<std::uint8_t>& blocks, int width, int height,
                                           int bits) {
    const Plain plain(blocks, width, height, bits);
    std::vector<std::uint8_t> rgba;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            for (const int channel : plain.pixel(x, y))
                rgba.push_back(static_cast<std::uint8_t>(channel));
    return rgba;
}
