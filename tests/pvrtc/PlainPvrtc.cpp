#include "PlainPvrtc.h"

#include <algorithm>
#include <array>

namespace {

using Color = std::array<int, 4>;

class Plain {
public:
    Plain(const std::vector<std::uint8_t>& data, int width, int height, int bits)
        : m_data(data), m_bits(bits), m_wide(bits == 2 ? 8 : 4), m_columns(width / m_wide),
          m_rows(height / 4) {}

    Color pixel(int x, int y) const {
        const Color low = blended(x, y, false);
        const Color high = blended(x, y, true);
        const Level level = levelOf(x, y);
        Color color;
        for (std::size_t i = 0; i < 4; ++i)
            color[i] = (low[i] * (8 - level.eighths) + high[i] * level.eighths) >> 3;
        if (level.transparent)
            color[3] = 0;
        return color;
    }

private:
    struct Level {
        int eighths;
        bool transparent = false;
    };

    static int wrapped(int value, int size) { return ((value % size) + size) % size; }

    /// A word of the block, 0 the modulation, 1 the colours.
    std::uint32_t word(int column, int row, int which) const {
        column = wrapped(column, m_columns);
        row = wrapped(row, m_rows);
        std::size_t index = 0;
        int bit = 0;
        for (int i = 0; 1 << i < std::max(m_columns, m_rows); ++i) {
            if (1 << i < m_rows)
                index |= std::size_t(row >> i & 1) << bit++;
            if (1 << i < m_columns)
                index |= std::size_t(column >> i & 1) << bit++;
        }
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < 4; ++i)
            value |= std::uint32_t(m_data[index * 8 + std::size_t(which) * 4 + i]) << 8 * i;
        return value;
    }

    /// Red, green, blue of five bits, alpha of four.
    Color base(int column, int row, bool high) const {
        const std::uint32_t colors = word(column, row, 1);
        const int bits = int(high ? colors >> 16 : colors & 0xfffe);
        const auto twice = [](int four) { return four << 1 | four >> 3; };
        if (bits & 0x8000) {
            const int blue = high ? bits & 31 : twice(bits >> 1 & 15);
            return {bits >> 10 & 31, bits >> 5 & 31, blue, 15};
        }
        const int three = bits >> 1 & 7;
        const int blue = high ? twice(bits & 15) : three << 2 | three >> 1;
        return {twice(bits >> 8 & 15), twice(bits >> 4 & 15), blue, (bits >> 12 & 7) << 1};
    }

    Color blended(int x, int y, bool high) const {
        // The block whose centre is the next one to the left and above, and how far the pixel is from it.
        const int left = x - m_wide / 2;
        const int above = y - 2;
        const int column = left < 0 ? -1 : left / m_wide;
        const int row = above < 0 ? -1 : above / 4;
        const int dx = left - column * m_wide;
        const int dy = above - row * 4;
        Color color;
        for (std::size_t i = 0; i < 4; ++i) {
            const auto channel = [&](int c, int r) { return base(c, r, high)[i]; };
            const int sum =
                (channel(column, row) * (m_wide - dx) + channel(column + 1, row) * dx) * (4 - dy) +
                (channel(column, row + 1) * (m_wide - dx) + channel(column + 1, row + 1) * dx) * dy;
            if (m_bits == 4)
                color[i] = i == 3 ? sum + (sum >> 4) : (sum >> 1) + (sum >> 6);
            else
                color[i] = i == 3 ? (sum >> 1) + (sum >> 5) : (sum >> 2) + (sum >> 7);
        }
        return color;
    }

    Level levelOf(int x, int y) const {
        const std::uint32_t modulation = word(x / m_wide, y / 4, 0);
        const bool mode = word(x / m_wide, y / 4, 1) & 1;
        if (m_bits == 4) {
            const int value = int(modulation >> 2 * (x % 4 + y % 4 * 4) & 3);
            constexpr int standard[] = {0, 3, 5, 8};
            constexpr int punched[] = {0, 4, 4, 8};
            return {mode ? punched[value] : standard[value], mode && value == 2};
        }
        if (!mode)
            return {modulation >> (x % 8 + y % 4 * 8) & 1 ? 8 : 0};
        if ((x + y) % 2 == 0)
            return {stored(x, y)};
        if (!(modulation & 1))
            return {(stored(x - 1, y) + stored(x + 1, y) + stored(x, y - 1) + stored(x, y + 1) + 2) / 4};
        if (modulation >> 20 & 1)
            return {(stored(x, y - 1) + stored(x, y + 1) + 1) / 2};
        return {(stored(x - 1, y) + stored(x + 1, y) + 1) / 2};
    }

    /// The level of a pixel of a 2-bit picture that is told.
    int stored(int x, int y) const {
        x = wrapped(x, m_columns * 8);
        y = wrapped(y, m_rows * 4);
        const std::uint32_t modulation = word(x / 8, y / 4, 0);
        if (!(word(x / 8, y / 4, 1) & 1))
            return modulation >> (x % 8 + y % 4 * 8) & 1 ? 8 : 0;
        const int place = y % 4 * 4 + x % 8 / 2;
        std::uint32_t value = modulation >> 2 * place & 3;
        // A low bit that tells how to interpolate is a copy of the high one.
        if (place == 0 || (place == 10 && (modulation & 1)))
            value = value >> 1 | (value & 2);
        constexpr int levels[] = {0, 3, 5, 8};
        return levels[value];
    }

    const std::vector<std::uint8_t>& m_data;
    const int m_bits;
    const int m_wide;
    const int m_columns;
    const int m_rows;
};

} // namespace

std::vector<std::uint8_t> plainPvrtcDecode(const std::vector<std::uint8_t>& data, int width, int height,
                                           int bits) {
    const Plain plain(data, width, height, bits);
    std::vector<std::uint8_t> pixels;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            for (const int channel : plain.pixel(x, y))
                pixels.push_back(static_cast<std::uint8_t>(channel));
    return pixels;
}
