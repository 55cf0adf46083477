#include "PvrtcDecoder.h"

#include "PvrtcFormat.h"

namespace {

struct Block {
    std::uint32_t modulation;
    bool otherMode; ///< punch-through with 4 bits, two stored bits for every second pixel with 2 bits
    PvrtcColorPair colors;
};

/// The level of a pixel, and whether it is punched through.
struct Modulation {
    int eighths;
    bool transparent;
};

std::uint32_t readWord(const std::uint8_t* bytes) {
    return bytes[0] | std::uint32_t{bytes[1]} << 8U | std::uint32_t{bytes[2]} << 16U |
           std::uint32_t{bytes[3]} << 24U;
}

class Decoder {
public:
    Decoder(const std::uint8_t* data, int width, int height, int bits)
        : m_bits(bits), m_blockWidth(pvrtcBlockWidth(bits)), m_columns(width / m_blockWidth),
          m_rows(height / pvrtcBlockHeight) {
        m_blocks.reserve(static_cast<std::size_t>(m_columns) * m_rows);
        for (const std::uint32_t index : pvrtcBlockOrder(m_columns, m_rows)) {
            const std::uint8_t* bytes = data + std::size_t{index} * pvrtcBlockBytes;
            const std::uint32_t colors = readWord(bytes + 4);
            m_blocks.push_back({readWord(bytes), (colors & 1U) != 0, pvrtcUnpackColors(colors)});
        }
    }

    void decodePixel(int x, int y, std::uint8_t* rgba) const;

private:
    const Block& block(int column, int row) const {
        return m_blocks[static_cast<std::size_t>(row & (m_rows - 1)) * m_columns +
                        (column & (m_columns - 1))];
    }
    const Block& blockOfPixel(int x, int y) const { return block(x / m_blockWidth, y / pvrtcBlockHeight); }

    Modulation modulation(int x, int y) const;
    Modulation modulation4(int x, int y) const;
    int storedLevel2(int x, int y) const;
    int level2(int x, int y) const;

    int m_bits;
    int m_blockWidth;
    int m_columns;
    int m_rows;
    std::vector<Block> m_blocks;
};

Modulation Decoder::modulation4(int x, int y) const {
    const Block& own = blockOfPixel(x, y);
    const unsigned value = own.modulation >> 2U * static_cast<unsigned>(x % 4 + y % 4 * 4) & 3U;
    if (own.otherMode)
        return {pvrtcPunchThroughLevels[value], value == 2};
    return {pvrtcLevels[value], false};
}

/// The level of a pixel that isn't interpolated; coordinates may lie one pixel outside.
int Decoder::storedLevel2(int x, int y) const {
    x &= m_columns * m_blockWidth - 1;
    y &= m_rows * pvrtcBlockHeight - 1;
    const Block& own = blockOfPixel(x, y);
    const auto pixel = static_cast<unsigned>(x % 8 + y % 4 * 8);
    if (!own.otherMode)
        return (own.modulation >> pixel & 1U) != 0 ? 8 : 0;

    // The low bits of the first pixel and of the one at the centre choose the interpolation; there the high
    // bit stands for both.
    constexpr unsigned centre = 20;
    const unsigned position = pixel / 2 * 2;
    const bool lostLowBit = position == 0 || (position == centre && (own.modulation & 1U) != 0);
    const unsigned value = own.modulation >> position & 3U;
    return pvrtcLevels[lostLowBit ? (value >> 1U) * 3 : value];
}

int Decoder::level2(int x, int y) const {
    const Block& own = blockOfPixel(x, y);
    if (!own.otherMode || (x + y) % 2 == 0)
        return storedLevel2(x, y);
    const bool oneDirection = (own.modulation & 1U) != 0;
    const bool vertical = (own.modulation >> 20U & 1U) != 0;
    const int horizontalSum = oneDirection && vertical ? 0 : storedLevel2(x - 1, y) + storedLevel2(x + 1, y);
    const int verticalSum = oneDirection && !vertical ? 0 : storedLevel2(x, y - 1) + storedLevel2(x, y + 1);
    return oneDirection ? (horizontalSum + verticalSum + 1) / 2 : (horizontalSum + verticalSum + 2) / 4;
}

Modulation Decoder::modulation(int x, int y) const {
    return m_bits == 4 ? modulation4(x, y) : Modulation{level2(x, y), false};
}

void Decoder::decodePixel(int x, int y, std::uint8_t* rgba) const {
    const int shiftedX = x + m_blockWidth / 2;
    const int shiftedY = y + pvrtcBlockHeight / 2;
    const int right = shiftedX % m_blockWidth;
    const int below = shiftedY % pvrtcBlockHeight;
    const int left = m_blockWidth - right;
    const int above = pvrtcBlockHeight - below;
    const int column = shiftedX / m_blockWidth;
    const int row = shiftedY / pvrtcBlockHeight;
    const PvrtcColorPair& leftAbove = block(column - 1, row - 1).colors;
    const PvrtcColorPair& rightAbove = block(column, row - 1).colors;
    const PvrtcColorPair& leftBelow = block(column - 1, row).colors;
    const PvrtcColorPair& rightBelow = block(column, row).colors;

    const Modulation pixel = modulation(x, y);
    for (std::size_t channel = 0; channel < 4; ++channel) {
        const auto blended = [&](std::size_t which) {
            const int sum = (leftAbove[which][channel] * left + rightAbove[which][channel] * right) * above +
                            (leftBelow[which][channel] * left + rightBelow[which][channel] * right) * below;
            return pvrtcBlend(sum, channel == 3, m_bits);
        };
        const int value = (blended(0) * (8 - pixel.eighths) + blended(1) * pixel.eighths) >> 3;
        rgba[channel] = static_cast<std::uint8_t>(pixel.transparent && channel == 3 ? 0 : value);
    }
}

} // namespace

void pvrtcDecode(const std::uint8_t* blocks, int width, int height, int bits, std::uint8_t* rgba) {
    const Decoder decoder(blocks, width, height, bits);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x, rgba += 4)
            decoder.decodePixel(x, y, rgba);
}
