#pragma once

#include <array>
#include <cstdint>

/// 4 x 4 pixels to encode, in the order in which the encoder takes them: the first pixel of the left, of the
/// right, of the upper and of the lower half, then their second ones, and so on. So each pixel is there
/// twice.
class alignas(32) Etc1Block {
public:
    static constexpr int size = 32;

    /// Sets a pixel, which counts from now on. `color`: red in the lowest byte, then green and blue.
    void setPixel(int x, int y, std::uint32_t color) {
        m_pixels[columnPlace(x, y)] = m_pixels[rowPlace(x, y)] = color | isSet;
    }

    /// Pixels that count have 255 in the highest byte, the others are 0.
    const std::array<std::uint32_t, size>& pixels() const { return m_pixels; }

    static constexpr int columnPlace(int x, int y) { return 4 * (2 * y + x % 2) + x / 2; }
    static constexpr int rowPlace(int x, int y) { return 4 * (4 * (y % 2) + x) + 2 + y / 2; }

    bool operator==(const Etc1Block&) const = default;

private:
    static constexpr std::uint32_t isSet = 0xFF000000;

    std::array<std::uint32_t, size> m_pixels = {};
};
