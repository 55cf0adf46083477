#include "Etc1Decoder.h"
#include "Etc1Encoder.h"
#include "Etc1Format.h"
#include "SideBySide.h"

#include <algorithm>

namespace {

using Color = std::array<std::uint8_t, 3>;
using Colors = std::array<std::array<int, 3>, 2>; ///< of the first and the second half

std::uint32_t bigEndianWord(const std::uint8_t* bytes) {
    return static_cast<std::uint32_t>(bytes[0]) << 24 | static_cast<std::uint32_t>(bytes[1]) << 16 |
           static_cast<std::uint32_t>(bytes[2]) << 8 | bytes[3];
}

Colors baseColors(std::uint32_t word) {
    Colors result;
    for (int channel = 0; channel < 3; ++channel) {
        const int byte = static_cast<int>(word >> etc1ColorShift(channel) & 0xFF);
        if ((word & etc1DifferentialBit) != 0) {
            const int first = byte >> 3;
            const int delta = ((byte & 7) ^ 4) - 4;
            result[0][channel] = etc1Widen5(first);
            result[1][channel] = etc1Widen5((first + delta) & 0x1F);
        } else {
            result[0][channel] = etc1Widen4(byte >> 4);
            result[1][channel] = etc1Widen4(byte & 0xF);
        }
    }
    return result;
}

class Block {
public:
    explicit Block(const std::uint8_t* bytes)
        : m_isStacked((bigEndianWord(bytes) & etc1FlipBit) != 0), m_indices(bigEndianWord(bytes + 4)) {
        const std::uint32_t word = bigEndianWord(bytes);
        const Colors base = baseColors(word);
        for (int half = 0; half < 2; ++half) {
            const Etc1Table& table = etc1Tables[word >> etc1TableShifts[half] & 7];
            for (unsigned index = 0; index < 4; ++index)
                for (int channel = 0; channel < 3; ++channel)
                    m_colors[half][index][channel] = static_cast<std::uint8_t>(
                        std::clamp(base[half][channel] + table.modifier(index), 0, 255));
        }
    }

    const Color& color(int x, int y) const {
        const int half = (m_isStacked ? y : x) / 2;
        const std::uint32_t bits = m_indices >> etc1IndexShift(x, y);
        return m_colors[half][(bits >> 15 & 2) | (bits & 1)];
    }

private:
    bool m_isStacked;
    std::uint32_t m_indices;
    std::array<std::array<Color, 4>, 2> m_colors; ///< of each half by index
};

} // namespace

void etc1DecodeImage(const std::uint8_t* blocks, int width, int height, std::uint8_t* pixels,
                     std::size_t rowPitch) {
    const std::size_t rowBytes = etc1DataSize(width, 4);
    sideBySide(etc1DataSize(4, height) / 8, [=](std::size_t blockRow) {
        const int rows = std::min(height - 4 * static_cast<int>(blockRow), 4);
        for (int left = 0; left < width; left += 4) {
            const Block block(blocks + blockRow * rowBytes + 2 * static_cast<std::size_t>(left));
            std::uint8_t* target = pixels + 4 * blockRow * rowPitch + 3 * static_cast<std::size_t>(left);
            for (int y = 0; y < rows; ++y)
                for (int x = 0; x < std::min(width - left, 4); ++x)
                    std::copy_n(block.color(x, y).begin(), 3, target + y * rowPitch + std::ptrdiff_t{3} * x);
        }
    });
}
